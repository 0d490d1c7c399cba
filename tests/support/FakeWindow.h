#pragma once

#include <QHash>
#include <QStringList>
#include <memory>

#include "device/WindowContext.h"
#include "domain/ValueControlView.h"

namespace rk31::test {

// Controls as plain values: window procedures run against it without any widget.
using FakeView = ValueControlView;

// Records what the procedures do with their wait windows and dialogs, in order:
// "wait: <text>", "show", "text: <text>", "close".
class FakeUi : public WindowUi {
  public:
    std::unique_ptr<WaitWindow> createWaitWindow(const QString& text) override {
        events << "wait: " + text;
        return std::make_unique<Wait>(events);
    }
    void processEvents() override {}
    std::int16_t choosePort() override { return port; }
    bool confirmCommLock() override { return confirmed; }
    void showAbout(const QString& version) override { events << "about: " + version; }
    void showLinearGraph(std::int16_t part, std::int16_t count, std::int16_t part2,
                         std::int16_t count2) override {
        events << QStringLiteral("graph: %1 %2 %3 %4").arg(part).arg(count).arg(part2).arg(count2);
    }
    void showRealTimeDisplay(std::int16_t part, std::int16_t num) override {
        events << QStringLiteral("display: %1 %2").arg(part).arg(num);
    }
    void showAdvanced(std::int16_t part, std::int16_t num) override {
        events << QStringLiteral("advanced: %1 %2").arg(part).arg(num);
    }

    QStringList events;
    std::int16_t port = 3;
    bool confirmed = false;

  private:
    class Wait : public WaitWindow {
      public:
        explicit Wait(QStringList& events) : m_events(events) {}
        ~Wait() override { m_events << "close"; }
        void show() override { m_events << "show"; }
        void TextChange(const QString& text) override { m_events << "text: " + text; }

      private:
        QStringList& m_events;
    };
};

}  // namespace rk31::test
