#include "ui/dialogs/About.h"

#include <QCoreApplication>
#include <QDir>

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>

#include "device/DeviceSession.h"
#include "domain/Formats.h"
#include "domain/Prompts.h"

namespace rk31 {

QString CalibrationReadoutText(const DeviceSession& session) {
    return QStringLiteral("sysoffset is: ") + SingleText(session.sysoffset) +
           QStringLiteral("; K(0)&B(0): ") + SingleText(session.K[0]) + QStringLiteral(" & ") +
           SingleText(session.B[0]) + QStringLiteral("; K(1)&B(1): ") + SingleText(session.K[1]) +
           QStringLiteral(" & ") + SingleText(session.B[1]) + QStringLiteral(" !");
}

namespace {

// Where the installed program's README and user guide are, or where to find them in a build.
QString GuidePlace() {
    const QDir docs(QCoreApplication::applicationDirPath() + u'/' +
                    QStringLiteral(RK31_DOCS_FROM_BIN));
    if (docs.exists(QStringLiteral("user-guide.md"))) {
        return QDir::toNativeSeparators(docs.canonicalPath()) +
               QStringLiteral("/user-guide.md and README.md");
    }
    return QStringLiteral("README.md and docs/user-guide.md in the program's source");
}

QLabel* addLabel(QWidget* parent, QVBoxLayout* layout, const QString& name, const QString& text) {
    auto* label = new QLabel(text, parent);
    label->setObjectName(name);
    layout->addWidget(label);
    return label;
}

}  // namespace

About::About(const DeviceSession& session, Prompts& prompts, QWidget* parent)
    : QDialog(parent), m_session(session), m_prompts(prompts) {
    setObjectName(QStringLiteral("About"));
    setWindowTitle(QStringLiteral("About"));

    auto* text = new QVBoxLayout;
    QLabel* product =
        addLabel(this, text, QStringLiteral("Label1"), QStringLiteral("RK31 GUI - QZ7734"));
    QFont heading = product->font();
    heading.setBold(true);
    heading.setPointSizeF(heading.pointSizeF() * 1.25);
    product->setFont(heading);
    addLabel(this, text, QStringLiteral("Label2"), QStringLiteral("Software Version 3.0.8"));
    addLabel(this, text, QStringLiteral("Label3"), QStringLiteral("Modified at 16Mar 2021"));
    m_hwVersion =
        addLabel(this, text, QStringLiteral("HWversion"), QStringLiteral("Hardware Version:"));
    text->addSpacing(12);
    addLabel(this, text, QStringLiteral("Label4"),
             QStringLiteral("Made by the RK31 GUI project team"));
    addLabel(this, text, QStringLiteral("Label5"),
             QStringLiteral("Copyright \u00A9 2026 the RK31 GUI project"));
    addLabel(this, text, QStringLiteral("Label6"),
             QStringLiteral("Questions and faults: the project's issue tracker"));
    addLabel(this, text, QStringLiteral("Label7"),
             QStringLiteral("Set-up and use: ") + GuidePlace());

    m_debugOnly = new QLabel(QStringLiteral("   "), this);
    m_debugOnly->setObjectName(QStringLiteral("debugonly"));
    m_debugOnly->installEventFilter(this);

    auto* ok = new QPushButton(QStringLiteral("&OK"), this);
    ok->setToolTip(QStringLiteral("Closes the About box"));
    ok->setObjectName(QStringLiteral("Command1"));
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);

    auto* bottom = new QHBoxLayout;
    bottom->addWidget(m_debugOnly);
    bottom->addStretch(1);
    bottom->addWidget(ok);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 16, 20, 12);
    layout->addLayout(text);
    layout->addSpacing(12);
    layout->addLayout(bottom);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

void About::Init(const QString& HWver) {
    m_hwVer = HWver;
    showHardwareVersion();
}

void About::showHardwareVersion() {
    m_hwVersion->setText(QStringLiteral("Hardware Version: ") + m_hwVer);
}

void About::showEvent(QShowEvent* event) {
    // The box's load.
    showHardwareVersion();
    QDialog::showEvent(event);
}

bool About::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_debugOnly && event->type() == QEvent::MouseButtonRelease &&
        static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
        m_prompts.message(CalibrationReadoutText(m_session));
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

}  // namespace rk31
