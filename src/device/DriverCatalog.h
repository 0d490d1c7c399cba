#pragma once

#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

class QPluginLoader;

namespace rk31 {

class DeviceDriver;

// The programmer drivers the program may load: Qt plugins implementing DeviceDriver, found in
// the given folders (RK31_DRIVER_PATH's, then the program's own: beside the executable in a
// build tree, the installed driver folder). A driver is only loaded when it is chosen. Every
// driver that cannot serve is reported on standard error with one line naming its file and the
// reason, and the next one is tried.
class DriverCatalog {
  public:
    // `wanted`: the name of the driver to prefer (RK31_DRIVER), empty for none.
    DriverCatalog(QStringList folders, QString wanted);
    ~DriverCatalog();
    DriverCatalog(const DriverCatalog&) = delete;
    DriverCatalog& operator=(const DriverCatalog&) = delete;

    // `driverPath` (RK31_DRIVER_PATH's folders), then the program's own.
    static QStringList DefaultFolders(const QStringList& driverPath);
    const QStringList& folders() const { return m_folders; }

    // The driver for the ProgID, loaded on first use: the wanted one when it provides the ProgID,
    // else the first that is not the simulated programmer ("sim") nor only for when it is
    // named, else "sim". nullptr when no
    // driver can serve; later calls give the same answer.
    DeviceDriver* driverFor(const QString& progId);
    // The name of the driver driverFor chose, empty while none.
    QString chosenName() const { return m_chosenName; }

  private:
    struct Candidate {
        QString file;
        QString name;
        QStringList progIds;
        // Its metadata's "OnlyWhenNamed": a driver for a line that may have no box behind it
        // does not push the simulated programmer aside just by being installed.
        bool onlyWhenNamed = false;
    };
    std::vector<Candidate> scan() const;
    DeviceDriver* load(const Candidate& candidate);

    QStringList m_folders;
    QString m_wanted;
    bool m_chosen = false;
    DeviceDriver* m_driver = nullptr;
    QString m_chosenName;
    std::vector<std::unique_ptr<QPluginLoader>> m_loaders;
};

// The message of a connect that finds no driver for the ProgID.
QString NoDriverMessage(const QString& progId, const QStringList& folders);

}  // namespace rk31
