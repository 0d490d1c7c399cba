// rk31-boxsim: the simulated programmer's box and dies behind a pseudo-terminal, answering the
// box protocol as a real box would on its serial line. The first line on standard output is the
// terminal's path; point the serial driver at it with RK31_SERIAL_PORTS.
#include <poll.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QFile>
#include <QThread>
#include <cerrno>
#include <cstdio>
#include <random>

#include "LineFaults.h"
#include "serial/protocol/BoxServer.h"
#include "sim/SimulatedDevice.h"

using namespace rk31;

namespace {

const char kUsage[] =
    "usage: rk31-boxsim [--drop=RATE] [--flip=RATE] [--baud=N] [--stall=OP:MS] [--garble=OP]\n"
    "                   [--pull-after=N] [--pull-during=OP[:N]] [--replug=MS] [--seed=N]\n"
    "                   [--link=PATH] [--trace=FILE]\n"
    "Serves the simulated box (RK31_SIM) on a new pseudo-terminal and prints its path.\n"
    "The same settings may come from RK31_BOXSIM as key=value;... (pull_after, ...).\n";

// One end of a pseudo-terminal, closed with its owner. The box keeps the terminal's other end
// open too, so that a program closing its port does not hang the terminal up.
class Terminal {
  public:
    Terminal() = default;
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    ~Terminal() { close(); }

    bool open() {
        char name[256] = {};
        if (openpty(&m_master, &m_slave, name, nullptr, nullptr) != 0) {
            return false;
        }
        termios raw{};
        tcgetattr(m_slave, &raw);
        cfmakeraw(&raw);
        tcsetattr(m_slave, TCSANOW, &raw);
        m_path = QString::fromLocal8Bit(name);
        return true;
    }
    void close() {
        for (int* fd : {&m_master, &m_slave}) {
            if (*fd >= 0) {
                ::close(*fd);
                *fd = -1;
            }
        }
    }
    int master() const { return m_master; }
    const QString& path() const { return m_path; }

  private:
    int m_master = -1;
    int m_slave = -1;
    QString m_path;
};

class Box {
  public:
    Box(const boxsim::LineFaults& faults, std::shared_ptr<sim::SimulatedBox> box)
        : m_faults(faults),
          m_box(box),
          m_server([box] { return sim::CreateSimulatedDevice(box); }),
          m_random(faults.seed) {}

    // Serves terminals until a pulled cable is not plugged back; false when none could be made.
    bool run() {
        for (;;) {
            Terminal terminal;
            if (!terminal.open()) {
                std::perror("rk31-boxsim: openpty");
                return false;
            }
            announce(terminal.path());
            serve(terminal);
            terminal.close();
            if (m_faults.replugMs < 0) {
                return true;
            }
            QThread::msleep(static_cast<unsigned long>(m_faults.replugMs));
        }
    }

  private:
    void announce(const QString& path) {
        if (!m_faults.link.isEmpty()) {
            QFile::remove(m_faults.link);
            QFile::link(path, m_faults.link);
        }
        std::printf("%s\n", qPrintable(path));
        std::fflush(stdout);
    }

    // Answers requests until the cable is pulled or the terminal fails.
    void serve(Terminal& terminal) {
        box::FrameReader reader;
        char buffer[512];
        for (;;) {
            pollfd watch{terminal.master(), POLLIN, 0};
            if (poll(&watch, 1, -1) < 0) {
                if (errno == EINTR) {
                    continue;
                }
                return;
            }
            const ssize_t count = read(terminal.master(), buffer, sizeof buffer);
            if (count <= 0) {
                if (count < 0 && (errno == EINTR || errno == EAGAIN)) {
                    continue;
                }
                return;
            }
            reader.feed(spoil(QByteArray(buffer, static_cast<qsizetype>(count))));
            for (;;) {
                const box::FrameReader::Result result = reader.next();
                if (result.frame) {
                    if (!answer(terminal, *result.frame)) {
                        return;
                    }
                } else {
                    if (result.garbled) {
                        send(terminal, box::EncodeFrame(box::BoxServer::garbled(*result.garbled)),
                             0);
                    }
                    break;
                }
            }
        }
    }

    // False when the cable was pulled.
    bool answer(Terminal& terminal, const box::Frame& request) {
        ++m_calls;
        const QString name = box::CommandName(request.command);
        if (name == m_faults.pullDuring && ++m_seenPullOp == m_faults.pullDuringCount) {
            pull(terminal);
            return false;
        }
        QByteArray bytes = box::EncodeFrame(m_server.answer(request));
        if (name == m_faults.stall) {
            QThread::msleep(static_cast<unsigned long>(m_faults.stallMs));
            m_faults.stall.clear();
        }
        if (name == m_faults.garble) {
            bytes[bytes.size() - 1] = static_cast<char>(bytes[bytes.size() - 1] ^ 0x10);
        }
        // Before the answer, so that the program never sees an answer the trace lacks; after a
        // stall, so that whoever reads the trace sees a stalled call once the box is awake.
        writeTrace();
        send(terminal, bytes, box::kFrameOverhead + request.payload.size());
        if (m_faults.pullAfter > 0 && m_calls >= m_faults.pullAfter) {
            pull(terminal);
            m_faults.pullAfter = 0;
            return false;
        }
        return true;
    }

    // The cable pulled: the terminal goes, and so does the link, as the device node of an
    // unplugged adapter does; a program that tries the path meanwhile finds nothing there.
    void pull(Terminal& terminal) {
        if (!m_faults.link.isEmpty()) {
            QFile::remove(m_faults.link);
        }
        terminal.close();
    }

    // The bytes as the line delivers them: some lost, some with a bit flipped.
    QByteArray spoil(const QByteArray& bytes) {
        if (m_faults.drop <= 0 && m_faults.flip <= 0) {
            return bytes;
        }
        std::uniform_real_distribution<double> chance(0, 1);
        std::uniform_int_distribution<int> bit(0, 7);
        QByteArray out;
        for (const char byte : bytes) {
            if (chance(m_random) < m_faults.drop) {
                continue;
            }
            char kept = byte;
            if (chance(m_random) < m_faults.flip) {
                kept = static_cast<char>(kept ^ (1 << bit(m_random)));
            }
            out += kept;
        }
        return out;
    }

    // Sends after the time the request and the answer take on the line at the set speed.
    void send(Terminal& terminal, const QByteArray& bytes, qsizetype requestSize) {
        if (m_faults.baud > 0) {
            const qint64 us = (requestSize + bytes.size()) * 10 * 1000000LL / m_faults.baud;
            QThread::usleep(static_cast<unsigned long>(us));
        }
        const QByteArray line = spoil(bytes);
        qsizetype done = 0;
        while (done < line.size()) {
            const ssize_t n = write(terminal.master(), line.constData() + done,
                                    static_cast<size_t>(line.size() - done));
            if (n < 0 && errno == EINTR) {
                continue;
            }
            if (n <= 0) {
                return;
            }
            done += n;
        }
    }

    void writeTrace() {
        if (m_faults.trace.isEmpty()) {
            m_box->clearTrace();
            return;
        }
        QFile file(m_faults.trace);
        if (file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text)) {
            for (const QString& line : m_box->trace()) {
                file.write((line + u'\n').toUtf8());
            }
        }
        m_box->clearTrace();
    }

    boxsim::LineFaults m_faults;
    std::shared_ptr<sim::SimulatedBox> m_box;
    box::BoxServer m_server;
    std::mt19937 m_random;
    int m_calls = 0;
    int m_seenPullOp = 0;
};

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QStringList options = QCoreApplication::arguments().mid(1);
    if (options.contains(QStringLiteral("--help")) || options.contains(QStringLiteral("-h"))) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    QStringList errors;
    const auto faults =
        boxsim::ParseLineFaults(qEnvironmentVariable("RK31_BOXSIM"), options, errors);
    if (!faults) {
        for (const QString& error : errors) {
            std::fprintf(stderr, "rk31-boxsim: %s\n", qPrintable(error));
        }
        std::fputs(kUsage, stderr);
        return 2;
    }
    Box box(*faults, std::make_shared<sim::SimulatedBox>(sim::SimConfigFromEnvironment()));
    return box.run() ? 0 : 1;
}
