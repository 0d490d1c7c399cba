#pragma once

#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

class QPluginLoader;

namespace rk31 {

class DeviceDriver;

// The programmer drivers the program may load: Qt plugins implementing DeviceDriver, found in
// the folders of RK31_DRIVER_PATH (separated by ':') and then in the program's own driver
// folders (beside the executable in a build tree, the installed driver folder). A driver is
// only loaded when it is chosen. Every driver that cannot serve is reported on standard error
// with one line naming its file and the reason, and the next one is tried.
class DriverCatalog {
  public:
    // The process's catalog, over RK31_DRIVER_PATH and the program's folders.
    static DriverCatalog& instance();

    explicit DriverCatalog(QStringList folders);
    ~DriverCatalog();
    DriverCatalog(const DriverCatalog&) = delete;
    DriverCatalog& operator=(const DriverCatalog&) = delete;

    // RK31_DRIVER_PATH's folders, then the program's own.
    static QStringList DefaultFolders();
    const QStringList& folders() const { return m_folders; }

    // The driver for the ProgID, loaded on first use: the one RK31_DRIVER names when it provides
    // the ProgID, else the first that is not the simulated programmer ("sim"), else "sim".
    // nullptr when no driver can serve; later calls give the same answer.
    DeviceDriver* driverFor(const QString& progId);
    // The name of the driver driverFor chose, empty while none.
    QString chosenName() const { return m_chosenName; }

  private:
    struct Candidate {
        QString file;
        QString name;
        QStringList progIds;
    };
    std::vector<Candidate> scan() const;
    DeviceDriver* load(const Candidate& candidate);

    QStringList m_folders;
    bool m_chosen = false;
    DeviceDriver* m_driver = nullptr;
    QString m_chosenName;
    std::vector<std::unique_ptr<QPluginLoader>> m_loaders;
};

// The message of a connect that finds no driver for the ProgID.
QString NoDriverMessage(const QString& progId, const QStringList& folders);

}  // namespace rk31
