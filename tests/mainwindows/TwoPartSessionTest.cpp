#include <QtTest>
class TwoPartSessionTest : public QObject { Q_OBJECT };
QTEST_MAIN(TwoPartSessionTest)
#include "TwoPartSessionTest.moc"
