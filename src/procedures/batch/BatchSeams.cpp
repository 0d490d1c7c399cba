#include "procedures/batch/BatchSeams.h"

namespace rk31 {

namespace {

class BatchWait : public WaitWindow {
  public:
    BatchWait(QString text, std::function<void(const QString&)> report)
        : m_text(std::move(text)), m_report(std::move(report)) {}
    void show() override { tell(m_text); }
    void TextChange(const QString& text) override {
        m_text = text;
        tell(text);
    }

  private:
    void tell(const QString& text) {
        if (m_report) {
            m_report(text);
        }
    }
    QString m_text;
    std::function<void(const QString&)> m_report;
};

}  // namespace

void BatchPrompts::message(const QString& text) {
    messages << text;
    m_output.error(where.isEmpty() ? text : where + QStringLiteral(": ") + text);
}

bool BatchPrompts::question(const QString& text) {
    message(text);
    return false;
}

QString BatchPrompts::openFileName(const QString& /*title*/, const QString& /*suggested*/) {
    return file;
}

QString BatchPrompts::saveFileName(const QString& /*title*/, const QString& /*suggested*/,
                                   const QStringList& /*filters*/, int* /*chosenFilter*/) {
    return {};
}

void BatchPrompts::runModal(QDialog& /*dialog*/) {}

std::unique_ptr<WaitWindow> BatchUi::createWaitWindow(const QString& text) {
    return std::make_unique<BatchWait>(text, onWaitText);
}

}  // namespace rk31
