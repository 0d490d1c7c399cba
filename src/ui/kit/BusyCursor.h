#pragma once

#include <QApplication>
#include <QCursor>

namespace rk31 {

// The busy cursor over the whole application for as long as it lives: a device sequence blocks
// the event loop, and the pointer must say so.
class BusyCursor {
  public:
    BusyCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~BusyCursor() { QApplication::restoreOverrideCursor(); }
    BusyCursor(const BusyCursor&) = delete;
    BusyCursor& operator=(const BusyCursor&) = delete;
};

// The ordinary pointer while a message box or dialog waits for the user inside a busy
// sequence; nothing when no sequence is busy.
class ArrowWhileAsking {
  public:
    ArrowWhileAsking() : m_active(QApplication::overrideCursor() != nullptr) {
        if (m_active) {
            QApplication::setOverrideCursor(Qt::ArrowCursor);
        }
    }
    ~ArrowWhileAsking() {
        if (m_active) {
            QApplication::restoreOverrideCursor();
        }
    }
    ArrowWhileAsking(const ArrowWhileAsking&) = delete;
    ArrowWhileAsking& operator=(const ArrowWhileAsking&) = delete;

  private:
    bool m_active;
};

}  // namespace rk31
