#pragma once

#include <QComboBox>
#include <QDialog>
#include <cstdint>
#include <functional>

class QLabel;
class QPushButton;

namespace rk31 {

class PortProber;
class Prompts;

// A drop-down list that asks for fresh entries each time it is dropped down.
class RefreshingComboBox : public QComboBox {
    Q_OBJECT
  public:
    explicit RefreshingComboBox(QWidget* parent = nullptr) : QComboBox(parent) {}
    std::function<void()> beforePopup;

    void showPopup() override;
};

// The port dialog: lists the COM ports that can be opened and checks that the chosen one opens.
// Probing goes through the driver's ports, messages through the window's prompts.
class frmComport : public QDialog {
    Q_OBJECT
  public:
    frmComport(PortProber& ports, Prompts& prompts, QWidget* parent = nullptr);

    // The chosen port; 0 when the user chose not to connect or closed the dialog.
    std::int16_t SelectedCOM() const { return m_selectedCOM; }
    // Selects the entry (a port that connected last time) when the probe lists it.
    void preselect(const QString& entry);

    void RefreshPortList();

  public slots:
    void reject() override;

  private:
    void showPortPath();
    void connectClicked();
    void doNotConnectClicked();

    PortProber& m_ports;
    Prompts& m_prompts;
    RefreshingComboBox* m_port;
    QLabel* m_portPath;
    QComboBox* m_baudrate;
    QLabel* m_baudLabel;
    QPushButton* m_connect;
    QPushButton* m_doNotConnect;
    std::int16_t m_selectedCOM = 0;
};

}  // namespace rk31
