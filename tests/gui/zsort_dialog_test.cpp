#include <QtTest>

class Placeholder : public QObject {
    Q_OBJECT
};

QTEST_MAIN(Placeholder)
#include "zsort_dialog_test.moc"
