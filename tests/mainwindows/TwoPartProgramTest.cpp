#include <QtTest>
class TwoPartProgramTest : public QObject { Q_OBJECT };
QTEST_MAIN(TwoPartProgramTest)
#include "TwoPartProgramTest.moc"
