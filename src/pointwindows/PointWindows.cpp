#include "pointwindows/PointWindows.h"

#include <QLabel>
#include <QVBoxLayout>

#include "core/AppTitle.h"

namespace rk31 {

PointProgrammingWindow::PointProgrammingWindow(const QString& className, QWidget* parent)
    : QWidget(parent) {
    setObjectName(className);
    setWindowTitle(QString::fromLatin1(kAppTitle));
    auto* layout = new QVBoxLayout(this);
    auto* note = new QLabel(tr("Point programming is not available in this version yet."), this);
    note->setObjectName(QStringLiteral("pendingNote"));
    layout->addWidget(note);
    resize(480, 160);
}

}  // namespace rk31
