#include "device/DriverCatalog.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QLibrary>
#include <QPluginLoader>
#include <algorithm>
#include <cstdio>

#include "rk31/DeviceDriver.h"

namespace rk31 {

namespace {

const QString kSimName = QStringLiteral("sim");

void report(const QString& file, const QString& reason) {
    std::fprintf(stderr, "rk31: driver %s: %s; trying the next driver\n", qPrintable(file),
                 qPrintable(reason));
}

// The folders the program itself keeps drivers in: "plugins" beside the executable (the build
// tree), and the installed driver folder, found relative to the installed executable so that
// the installation can be moved.
QStringList programFolders() {
    QStringList folders;
    if (QCoreApplication::instance() == nullptr) {
        return folders;
    }
    const QDir here(QCoreApplication::applicationDirPath());
    folders << here.filePath(QStringLiteral("plugins"));
    folders << QDir::cleanPath(here.filePath(QStringLiteral(RK31_DRIVER_DIR_FROM_BIN)));
    return folders;
}

}  // namespace

DriverCatalog::DriverCatalog(QStringList folders, QString wanted)
    : m_folders(std::move(folders)), m_wanted(std::move(wanted)) {}

DriverCatalog::~DriverCatalog() = default;

QStringList DriverCatalog::DefaultFolders(const QStringList& driverPath) {
    QStringList folders = driverPath;
    for (const QString& folder : programFolders()) {
        if (!folders.contains(folder)) {
            folders << folder;
        }
    }
    return folders;
}

std::vector<DriverCatalog::Candidate> DriverCatalog::scan() const {
    std::vector<Candidate> found;
    for (const QString& folder : m_folders) {
        const QDir dir(folder);
        const QStringList names = dir.entryList(QDir::Files, QDir::Name);
        for (const QString& name : names) {
            const QString file = dir.filePath(name);
            if (!QLibrary::isLibrary(file)) {
                continue;
            }
            QPluginLoader loader(file);
            const QJsonObject meta = loader.metaData();
            const QString iid = meta.value(QStringLiteral("IID")).toString();
            if (meta.isEmpty()) {
                report(file, QStringLiteral("cannot be loaded (") + loader.errorString() + u')');
                continue;
            }
            if (!iid.startsWith(QStringLiteral(RK31_DEVICE_DRIVER_IID_PREFIX))) {
                report(file, QStringLiteral("is not a device driver (its interface is \"") + iid +
                                 QStringLiteral("\")"));
                continue;
            }
            if (iid != QStringLiteral(RK31_DEVICE_DRIVER_IID)) {
                report(file, QStringLiteral("has the wrong interface version (\"") + iid +
                                 QStringLiteral("\", this program needs \"" RK31_DEVICE_DRIVER_IID
                                                "\")"));
                continue;
            }
            const QJsonObject data = meta.value(QStringLiteral("MetaData")).toObject();
            Candidate candidate{file,
                                data.value(QStringLiteral("Name")).toString(),
                                {},
                                data.value(QStringLiteral("OnlyWhenNamed")).toBool()};
            for (const auto& id : data.value(QStringLiteral("ProgIDs")).toArray()) {
                candidate.progIds << id.toString();
            }
            candidate.progIds.removeAll(QString());
            if (candidate.name.isEmpty()) {
                candidate.name = QFileInfo(file).baseName();
            }
            if (candidate.progIds.isEmpty()) {
                report(file, QStringLiteral("provides nothing (its metadata names no ProgID)"));
                continue;
            }
            found.push_back(std::move(candidate));
        }
    }
    return found;
}

DeviceDriver* DriverCatalog::load(const Candidate& candidate) {
    auto loader = std::make_unique<QPluginLoader>(candidate.file);
    QObject* root = loader->instance();
    if (root == nullptr) {
        report(candidate.file, QStringLiteral("cannot be loaded (") + loader->errorString() + u')');
        return nullptr;
    }
    auto* driver = qobject_cast<DeviceDriver*>(root);
    if (driver == nullptr) {
        report(candidate.file, QStringLiteral("does not implement the device driver interface"));
        return nullptr;
    }
    m_loaders.push_back(std::move(loader));
    return driver;
}

DeviceDriver* DriverCatalog::driverFor(const QString& progId) {
    if (m_chosen) {
        return m_driver;
    }
    m_chosen = true;
    std::vector<Candidate> candidates = scan();
    std::erase_if(candidates, [&progId, this](const Candidate& c) {
        return !c.progIds.contains(progId) || (c.onlyWhenNamed && c.name != m_wanted);
    });
    // The simulated programmer is the fallback: any other driver for the ProgID comes first,
    // and the wanted one before all.
    const QString& wanted = m_wanted;
    std::stable_sort(
        candidates.begin(), candidates.end(), [&wanted](const Candidate& a, const Candidate& b) {
            const auto rank = [&wanted](const Candidate& c) {
                return !wanted.isEmpty() && c.name == wanted ? 0 : c.name != kSimName ? 1 : 2;
            };
            return rank(a) < rank(b);
        });
    if (!wanted.isEmpty() && (candidates.empty() || candidates.front().name != wanted)) {
        std::fprintf(stderr, "rk31: RK31_DRIVER: no driver named %s provides %s\n",
                     qPrintable(wanted), qPrintable(progId));
    }
    for (const Candidate& candidate : candidates) {
        if (DeviceDriver* driver = load(candidate)) {
            m_driver = driver;
            m_chosenName = candidate.name;
            break;
        }
    }
    return m_driver;
}

QString NoDriverMessage(const QString& progId, const QStringList& folders) {
    return QStringLiteral("No device driver provides ") + progId + QStringLiteral("! Searched: ") +
           (folders.isEmpty() ? QStringLiteral("no folder") : folders.join(QStringLiteral(", ")));
}

}  // namespace rk31
