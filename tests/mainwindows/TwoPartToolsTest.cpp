#include <QtTest>
class TwoPartToolsTest : public QObject { Q_OBJECT };
QTEST_MAIN(TwoPartToolsTest)
#include "TwoPartToolsTest.moc"
