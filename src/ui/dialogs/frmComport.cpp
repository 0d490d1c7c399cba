#include "ui/dialogs/frmComport.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "device/PortList.h"
#include "domain/Prompts.h"
#include "rk31/PortProber.h"

namespace rk31 {

namespace {

const QString kInvalidPort = QStringLiteral("This port is invalid, Please select another port!");

}  // namespace

void RefreshingComboBox::showPopup() {
    if (beforePopup) {
        beforePopup();
    }
    QComboBox::showPopup();
}

frmComport::frmComport(PortProber& ports, Prompts& prompts, QWidget* parent)
    : QDialog(parent), m_ports(ports), m_prompts(prompts) {
    setObjectName(QStringLiteral("frmComport"));
    setWindowTitle(QStringLiteral("Select Com port"));

    auto* portLabel = new QLabel(QStringLiteral("&Port:"), this);
    portLabel->setObjectName(QStringLiteral("Label1"));
    m_port = new RefreshingComboBox(this);
    m_port->setObjectName(QStringLiteral("Port"));
    // Editable so that a port the probe does not list can still be typed.
    m_port->setEditable(true);
    m_port->setInsertPolicy(QComboBox::NoInsert);
    m_port->setMinimumContentsLength(8);
    m_port->beforePopup = [this] { RefreshPortList(); };
    portLabel->setBuddy(m_port);

    // Where the chosen port leads, for a driver whose ports are device paths.
    m_portPath = new QLabel(this);
    m_portPath->setObjectName(QStringLiteral("PortPath"));
    m_portPath->setVisible(false);
    connect(m_port, &QComboBox::currentIndexChanged, this, &frmComport::showPortPath);

    m_baudLabel = new QLabel(QStringLiteral("Com port:"), this);
    m_baudLabel->setObjectName(QStringLiteral("Label2"));
    m_baudrate = new QComboBox(this);
    m_baudrate->setObjectName(QStringLiteral("Baudrate"));
    m_baudLabel->setBuddy(m_baudrate);

    m_connect = new QPushButton(QStringLiteral("&Connect"), this);
    m_connect->setObjectName(QStringLiteral("connect"));
    m_connect->setToolTip(QStringLiteral("Opens the channel to the programmer on the chosen port"));
    m_connect->setDefault(true);
    m_doNotConnect = new QPushButton(QStringLiteral("&Do not connect"), this);
    m_doNotConnect->setObjectName(QStringLiteral("Donotconnect"));
    m_doNotConnect->setToolTip(QStringLiteral("Closes the dialog; the window stays offline"));

    auto* fields = new QGridLayout;
    fields->addWidget(portLabel, 0, 0);
    fields->addWidget(m_port, 0, 1);
    fields->addWidget(m_portPath, 2, 1);
    fields->addWidget(m_baudLabel, 1, 0);
    fields->addWidget(m_baudrate, 1, 1);
    fields->setColumnStretch(1, 1);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_connect);
    buttons->addWidget(m_doNotConnect);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(fields);
    layout->addStretch(1);
    layout->addLayout(buttons);

    connect(m_connect, &QPushButton::clicked, this, &frmComport::connectClicked);
    connect(m_doNotConnect, &QPushButton::clicked, this, &frmComport::doNotConnectClicked);

    // The dialog's load.
    m_baudrate->addItem(QStringLiteral("9600"));
    m_baudrate->setCurrentIndex(0);
    m_baudrate->setVisible(false);
    m_baudLabel->setVisible(false);
    RefreshPortList();
}

void frmComport::RefreshPortList() {
    m_port->clear();
    const QStringList entries = rk31::RefreshPortList(m_ports);
    m_port->addItems(entries);
    for (int i = 0; i < m_port->count(); ++i) {
        const auto port = PortNumberFromText(m_port->itemText(i));
        m_port->setItemData(i, port ? m_ports.portName(*port) : QString(), Qt::ToolTipRole);
    }
    showPortPath();
    if (entries.isEmpty()) {
        m_port->setEnabled(false);
    } else {
        m_port->setCurrentIndex(0);
    }
}

void frmComport::preselect(const QString& entry) {
    const int at = m_port->findText(entry);
    if (!entry.isEmpty() && at >= 0) {
        m_port->setCurrentIndex(at);
    }
}

void frmComport::showPortPath() {
    const QString path = m_port->currentData(Qt::ToolTipRole).toString();
    m_portPath->setText(path);
    m_portPath->setVisible(!path.isEmpty());
    m_port->setToolTip(path);
    m_port->setAccessibleDescription(path);
}

void frmComport::connectClicked() {
    const QString text = m_port->currentText();
    const auto port = text.isEmpty() ? std::nullopt : PortNumberFromText(text);
    if (!port) {
        m_prompts.message(kInvalidPort);
        return;
    }
    m_selectedCOM = *port;
    if (m_ports.open(*port) != 0) {
        m_prompts.message(kInvalidPort);
        return;
    }
    m_ports.close(*port);
    accept();
}

void frmComport::doNotConnectClicked() {
    reject();
}

void frmComport::reject() {
    // The close box and Escape count as "Do not connect".
    m_selectedCOM = 0;
    QDialog::reject();
}

}  // namespace rk31
