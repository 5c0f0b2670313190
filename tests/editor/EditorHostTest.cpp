#include "TestHelpers.h"

#include <QImage>
#include <QTemporaryDir>
#include <QTest>

// The desktop program, run as a user would run it without a display.
class EditorHostTest : public QObject
{
    Q_OBJECT

private slots:
    void run_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QString>("refusal"); // empty: the screenshot is written

        // No folder given: the bundled example opens, found from the program's own folder.
        QTest::newRow("screenshot of the opening page") << QStringList({"--screenshot", "shot.png"}) << QString();
        for (int tab = 0; tab < 6; ++tab)
            QTest::addRow("screenshot of page %d", tab)
                << QStringList({"--screenshot", "shot.png", "--tab", QString::number(tab)}) << QString();
        const QString example = PE_SOURCE_DIR "/examples/definitions";
        const QString usage = "\n\nUsage:\n";
        QTest::newRow("unknown option") << QStringList({example, "--colour"}) << "product-editor: Unknown option 'colour'." + usage;
        QTest::newRow("tab out of range") << QStringList({"--screenshot", "x.png", "--tab", "6"})
                                          << "product-editor: --tab: '6' is not a page number from 0 to 5" + usage;
        QTest::newRow("tab without screenshot") << QStringList({"--tab", "1"}) << "--tab is only meaningful with --screenshot";
        QTest::newRow("no such folder") << QStringList({"/no/such"}) << "product-editor: /no/such: the definition folder does not exist\n";
        QTest::newRow("window without a display") << QStringList({example}) << "no display to open the window on";
        QTest::newRow("bad catalogue") << QStringList({example, "--licenses", "/no/such.json", "--screenshot", "x.png"})
                                       << "product-editor: /no/such.json: cannot be read: no such file\n";
    }

    void run()
    {
        QFETCH(QStringList, args);
        QFETCH(QString, refusal);

        QFile::remove(m_dir.filePath("shot.png"));
        for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            qunsetenv(name); // this suite needs no display either
        const Run run = Start(PE_PROGRAM, args, m_dir.path());
        QVERIFY2(refusal.isEmpty() ? run.err.isEmpty() : run.err.contains(refusal), qPrintable(run.err));
        QCOMPARE(run.status, refusal.isEmpty() ? 0 : 2);
        if (refusal.isEmpty())
            QVERIFY(QImage(m_dir.filePath("shot.png")).width() >= 1197);
    }

private:
    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(EditorHostTest)
#include "EditorHostTest.moc"
