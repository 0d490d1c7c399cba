// Preloaded into a Qt Widgets program (LD_PRELOAD) to time its start-up from outside, without a
// line of the program changed: the first window the platform exposes, once that expose has been
// handled (the window painted), is reported on standard output as
//   RK31_BENCH first_window_ns=<CLOCK_MONOTONIC> vmhwm_kb=<peak> rss_anon_kb=.. rss_file_kb=..
// and the process ends at once.
#include <unistd.h>
#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QTimer>
#include <cstdio>

#include "ProcStatus.h"

namespace {

using rk31::bench::MonotonicNs;
using rk31::bench::StatusKb;

class FirstExposeWatcher : public QObject {
  public:
    using QObject::QObject;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (!m_seen && event->type() == QEvent::Expose && watched->isWindowType()) {
            m_seen = true;
            // Queued behind the expose itself, so the figure includes the first paint.
            QTimer::singleShot(0, this, [] {
                std::printf("RK31_BENCH first_window_ns=%lld vmhwm_kb=%ld", MonotonicNs(),
                            StatusKb("VmHWM"));
                rk31::bench::PrintResidentSplit();
                std::printf("\n");
                std::fflush(stdout);
                // Tearing the program down is not part of its start-up.
                _exit(0);
            });
        }
        return false;
    }

  private:
    bool m_seen = false;
};

void InstallWatcher() {
    auto* app = QCoreApplication::instance();
    app->installEventFilter(new FirstExposeWatcher(app));
}

}  // namespace

Q_COREAPP_STARTUP_FUNCTION(InstallWatcher)
