#include "ui/dialogs/frmadvanced.h"

#include <QButtonGroup>
#include <QCoreApplication>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "device/ChipStateMachine.h"
#include "device/DeviceSession.h"
#include "domain/Prompts.h"
#include "rk31/DeviceError.h"
#include "ui/kit/BusyCursor.h"

namespace rk31 {

namespace {

QString indexed(const char* name, int index) {
    return QString::fromLatin1(name) + u'_' + QString::number(index);
}

QLineEdit* hexBox(QWidget* parent, const char* name, int row, const QString& accessibleName) {
    auto* box = new QLineEdit(parent);
    box->setObjectName(indexed(name, row));
    box->setAccessibleName(accessibleName);
    // Eight hexadecimal digits and a little air.
    box->setMinimumWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("DDDDDDDDDD")));
    return box;
}

}  // namespace

frmadvanced::frmadvanced(DeviceSession& session, Prompts& prompts, Pause& pause, QWidget* parent)
    : QDialog(parent), m_session(session), m_prompts(prompts), m_pause(pause) {
    setObjectName(QStringLiteral("frmadvanced"));
    setWindowTitle(QStringLiteral("Advanced Commands"));

    auto* banks = new QGridLayout;
    for (int bank = 0; bank < kMemoryRows / kRowsPerBank; ++bank) {
        banks->addWidget(buildBank(bank), bank / 2, bank % 2);
    }

    m_parts = new QButtonGroup(this);
    auto* commands = new QHBoxLayout;
    for (int k = 0; k < 2; ++k) {
        m_partOption[k] = new QRadioButton(QStringLiteral("Part#&") + QString::number(k + 1), this);
        m_partOption[k]->setObjectName(indexed("PartOption", k));
        m_partOption[k]->setToolTip(
            QStringLiteral("MemRead and MemWrite act on Part#%1").arg(k + 1));
        m_parts->addButton(m_partOption[k], k);
        commands->addWidget(m_partOption[k]);
    }
    commands->addStretch(1);
    m_memread = new QPushButton(QStringLiteral("Mem&Read"), this);
    m_memread->setObjectName(QStringLiteral("memread"));
    m_memread->setToolTip(QStringLiteral("Reads the words at the rows' addresses from the part"));
    m_memwrite = new QPushButton(QStringLiteral("Mem&Write"), this);
    m_memwrite->setObjectName(QStringLiteral("memwritewithCRC"));
    m_memwrite->setToolTip(QStringLiteral("Writes the rows' data words into the part"));
    commands->addWidget(m_memread);
    commands->addWidget(m_memwrite);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(banks);
    layout->addSpacing(6);
    layout->addLayout(commands);

    connect(m_memread, &QPushButton::clicked, this, &frmadvanced::memreadClicked);
    connect(m_memwrite, &QPushButton::clicked, this, &frmadvanced::memwriteClicked);
    connect(m_parts, &QButtonGroup::idClicked, this, &frmadvanced::partOptionClicked);
}

QWidget* frmadvanced::buildBank(int bank) {
    auto* frame = new QGroupBox(QStringLiteral("Memory bank ") + QString::number(bank), this);
    frame->setObjectName(indexed("Frame", bank));
    auto* grid = new QGridLayout(frame);
    grid->setHorizontalSpacing(6);
    grid->setVerticalSpacing(4);

    const QString captions[] = {QStringLiteral("Addr:"), QStringLiteral("Data in:"),
                                QStringLiteral("Data out:")};
    std::array<QLabel*, 3> headers{};
    for (int column = 0; column < 3; ++column) {
        headers[column] = new QLabel(captions[column], frame);
        grid->addWidget(headers[column], 0, column + 1);
    }

    for (int line = 0; line < kRowsPerBank; ++line) {
        const int row = bank * kRowsPerBank + line;
        const QString rowText = QString::number(row);
        // The row number is what the hexadecimal check names, so the user can find the row.
        auto* number = new QLabel(rowText, frame);
        number->setObjectName(indexed("RowLabel", row));
        number->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        // Equal width in every bank keeps the four frames' columns in line.
        number->setMinimumWidth(number->fontMetrics().horizontalAdvance(QStringLiteral("00")));
        grid->addWidget(number, line + 1, 0);

        const QString prefix = QStringLiteral("Row ") + rowText + u' ';
        m_add[row] = hexBox(frame, "add", row, prefix + captions[0]);
        m_din[row] = hexBox(frame, "Din", row, prefix + captions[1]);
        m_out[row] = hexBox(frame, "out", row, prefix + captions[2]);
        m_out[row]->setReadOnly(true);
        m_out[row]->setFocusPolicy(Qt::ClickFocus);
        m_add[row]->setText(InitialAddressText(row));
        number->setBuddy(m_add[row]);
        grid->addWidget(m_add[row], line + 1, 1);
        grid->addWidget(m_din[row], line + 1, 2);
        grid->addWidget(m_out[row], line + 1, 3);
        if (line == 0) {
            for (int column = 0; column < 3; ++column) {
                headers[column]->setBuddy(column == 0   ? m_add[row]
                                          : column == 1 ? m_din[row]
                                                        : m_out[row]);
            }
        }
    }
    return frame;
}

void frmadvanced::Init(std::int16_t Index, std::int16_t num) {
    m_selection.Init(Index, num);
}

void frmadvanced::showEvent(QShowEvent* event) {
    // The dialog's load.
    const int part = m_selection.part();
    if (part >= 0 && part < 2) {
        m_partOption[part]->setChecked(true);
    }
    for (QRadioButton* option : m_partOption) {
        option->setEnabled(!m_selection.partFixed());
    }
    QDialog::showEvent(event);
}

MemoryRowTexts frmadvanced::rowTexts() const {
    MemoryRowTexts rows;
    for (int row = 0; row < kMemoryRows; ++row) {
        rows[row] = {m_add[row]->text(), m_din[row]->text()};
    }
    return rows;
}

void frmadvanced::memreadClicked() {
    const BusyCursor busy;
    try {
        ChipStateMachine chips(m_session, m_prompts, m_pause);
        AdvancedMemory memory(m_session, chips, m_prompts);
        memory.MemRead(m_selection.part(), rowTexts(), [this](int row, std::int32_t word) {
            m_out[row]->setText(HexWordText(word));
            QCoreApplication::processEvents();
        });
    } catch (const DeviceError& error) {
        m_prompts.message(error.description());
    }
}

void frmadvanced::memwriteClicked() {
    const BusyCursor busy;
    try {
        ChipStateMachine chips(m_session, m_prompts, m_pause);
        AdvancedMemory memory(m_session, chips, m_prompts);
        memory.MemWrite(m_selection.part(), rowTexts());
    } catch (const DeviceError& error) {
        m_prompts.message(error.description());
    }
}

void frmadvanced::partOptionClicked(int k) {
    if (!m_selection.Select(static_cast<std::int16_t>(k))) {
        return;
    }
    for (int row = 0; row < kMemoryRows; ++row) {
        m_din[row]->clear();
        m_out[row]->clear();
    }
}

}  // namespace rk31
