#include <QtTest>

class Placeholder : public QObject {
    Q_OBJECT
};

QTEST_MAIN(Placeholder)
#include "layout_page_window_test.moc"
