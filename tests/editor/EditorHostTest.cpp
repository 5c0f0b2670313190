#include <QDir>
#include <QImage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QTest>

// The desktop program, run as a user would run it without a display.
class EditorHostTest : public QObject
{
    Q_OBJECT

private slots:
    void screenshotOfEachPage_data();
    void screenshotOfEachPage();
    void refusesBadArguments_data();
    void refusesBadArguments();

private:
    int run(const QStringList &args, QString *err = nullptr);
    QTemporaryDir m_dir;
};

int EditorHostTest::run(const QStringList &args, QString *err)
{
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("DISPLAY"));
    env.remove(QStringLiteral("WAYLAND_DISPLAY"));
    env.remove(QStringLiteral("QT_QPA_PLATFORM"));
    process.setProcessEnvironment(env);
    process.start(QStringLiteral(PE_PROGRAM), args);
    if (!process.waitForFinished(60000))
        return -1;
    if (err)
        *err = QString::fromLocal8Bit(process.readAllStandardError());
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

void EditorHostTest::screenshotOfEachPage_data()
{
    QTest::addColumn<QStringList>("extra");
    QTest::newRow("opening page") << QStringList();
    for (int tab = 0; tab < 6; ++tab)
        QTest::addRow("page %d", tab) << QStringList({"--tab", QString::number(tab)});
}

void EditorHostTest::screenshotOfEachPage()
{
    QFETCH(QStringList, extra);
    const QString file = m_dir.filePath(QStringLiteral("%1.png").arg(QTest::currentDataTag()));
    QString err;
    // No folder given: the bundled example opens.
    QCOMPARE(run(QStringList({"--screenshot", file}) + extra, &err), 0);
    QVERIFY2(!err.contains(QLatin1String("propagateSizeHints")), qPrintable(err));
    const QImage image(file);
    QVERIFY(!image.isNull());
    QVERIFY(image.width() >= 1197 && image.height() >= 822);
}

void EditorHostTest::refusesBadArguments_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("message");
    const QString example = QStringLiteral(PE_SOURCE_DIR "/examples/definitions");
    QTest::newRow("unknown option") << QStringList({example, "--colour"}) << "unknown option '--colour'";
    QTest::newRow("tab out of range") << QStringList({"--screenshot", "x.png", "--tab", "6"}) << "--tab: '6'";
    QTest::newRow("tab without screenshot") << QStringList({"--tab", "1"}) << "--tab is only meaningful";
    QTest::newRow("missing value") << QStringList({"--screenshot"}) << "needs a value";
    QTest::newRow("two folders") << QStringList({example, example}) << "unexpected argument";
    QTest::newRow("no such folder") << QStringList({"/no/such/folder"})
                                    << "/no/such/folder: the definition folder does not exist";
    QTest::newRow("window without a display") << QStringList({example}) << "no display to open the window on";
    QTest::newRow("bad catalogue") << QStringList({example, "--licenses", "/no/such.json", "--screenshot", "x.png"})
                                   << "/no/such.json: cannot be read";
}

void EditorHostTest::refusesBadArguments()
{
    QFETCH(QStringList, args);
    QFETCH(QString, message);
    QString err;
    QCOMPARE(run(args, &err), 2);
    QVERIFY2(err.contains(message), qPrintable(err));
}

QTEST_GUILESS_MAIN(EditorHostTest)
#include "EditorHostTest.moc"
