#pragma once

#include <QHash>
#include <QStringList>
#include <memory>

#include "context/ControlView.h"
#include "context/WindowContext.h"

namespace rk31::test {

// Controls as plain values: window procedures run against it without any widget. A control
// springs into existence the first time it is named.
class FakeView : public ControlView {
  public:
    struct Control {
        QString text;
        int value = 0;
        int listIndex = -1;
        QStringList items;
        bool enabled = true;
        bool visible = true;
    };

    QString text(const QString& name, int index = -1) const override {
        return at(name, index).text;
    }
    void setText(const QString& name, int index, const QString& text) override {
        at(name, index).text = text;
    }
    int value(const QString& name, int index = -1) const override { return at(name, index).value; }
    void setValue(const QString& name, int index, int value) override {
        at(name, index).value = value;
    }
    int listIndex(const QString& name, int index = -1) const override {
        return at(name, index).listIndex;
    }
    void setListIndex(const QString& name, int index, int listIndex) override {
        at(name, index).listIndex = listIndex;
    }
    int listCount(const QString& name, int index = -1) const override {
        return static_cast<int>(at(name, index).items.size());
    }
    void setListItems(const QString& name, int index, const QStringList& items) override {
        at(name, index).items = items;
    }
    bool isEnabled(const QString& name, int index = -1) const override {
        return at(name, index).enabled;
    }
    void setEnabled(const QString& name, int index, bool enabled) override {
        at(name, index).enabled = enabled;
    }
    bool isVisible(const QString& name, int index = -1) const override {
        return at(name, index).visible;
    }
    void setVisible(const QString& name, int index, bool visible) override {
        at(name, index).visible = visible;
    }

    Control& at(const QString& name, int index = -1) const {
        return m_controls[index < 0 ? name : name + u'_' + QString::number(index)];
    }

  private:
    mutable QHash<QString, Control> m_controls;
};

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
