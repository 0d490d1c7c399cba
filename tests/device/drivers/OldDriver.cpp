// A driver built against an older driver interface.
#include <QObject>
#include <QtPlugin>

class OldDriver : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.rk31gui.DeviceDriver/0" FILE "example.json")
};

#include "OldDriver.moc"
