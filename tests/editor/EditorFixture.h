#pragma once

#include "MemoryFolder.h"
#include "editor/CreateProductEditor.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLineEdit>
#include <QMainWindow>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

#include <memory>

// A small definition folder in canonical form, so that regenerating it right
// after loading changes nothing.
inline QByteArray CanonicalProducts()
{
    return R"({"extensions": {"extension": [
        {"id": "step", "title": "STEP", "ext": "*.step", "cad_support": true, "load_as_part": false, "multiple_parts_support": true, "slices_support": false},
        {"id": "stl", "title": "Stereolithography", "ext": "*.stl", "cad_support": false, "load_as_part": true, "multiple_parts_support": false, "slices_support": false}],
      "lic_coveradge": {"export": [{"id": "stl", "lic": ["lic_pro"]}], "import": [{"id": "stl", "lic": ["lic_basic", "lic_pro"]}]}},
    "features": {"feature": [{"id": "file_open", "title": "Open", "tooltip": "Open a file", "statustip": "Opens a file"},
        {"id": "file_save", "title": "Save"}, {"id": "mesh_cut", "title": "Cut", "emergency": true, "visual": false}]},
    "products": {"product": [
        {"id": "basic", "profile_suffix": "_b", "modes": ["main"], "features": ["file_open", "file_save"],
         "licensing": {"base": "lic_basic", "specific": [{"id": "file_save", "licenses": ["lic_addon"]}]},
         "extensions": {"export": [], "export_as_project": [], "export_as_scene": [], "import": ["stl"], "import_as_project": [], "open": ["stl"]}},
        {"id": "pro", "profile_suffix": "_p", "modes": ["expert", "main"], "features": ["file_open", "file_save", "mesh_cut"],
         "licensing": {"base": "lic_pro", "specific": []},
         "extensions": {"export": ["stl"], "export_as_project": [], "export_as_scene": [], "import": ["step", "stl"], "import_as_project": [], "open": ["step", "stl"]}}]}})";
}

inline QByteArray CanonicalLayouts()
{
    const QByteArray none = R"("export": [], "export_as_project": [], "export_as_scene": [], "import_as_project": [])";
    return R"({"layouts": {"expert": {"extensions": {)" + none + R"(, "import": ["step"], "open": []}, "features": ["mesh_cut"]},
        "main": {"extensions": {)" + none + R"(, "import": ["stl"], "open": ["stl"]}, "features": ["file_open", "file_save"]}}})";
}

// Answers modal dialogs from a timer, in order, as they open: a message box
// gets the button, an input dialog the text, a file dialog the folder; a null
// answer cancels. Logs what each dialog (busy dialogs included) showed.
class DialogAnswers : public QObject
{
public:
    DialogAnswers()
    {
        qApp->installEventFilter(this);
        QObject::connect(&m_timer, &QTimer::timeout, [this] { Poll(); });
        m_timer.start(5);
    }
    ~DialogAnswers() override { qApp->removeEventFilter(this); }

    void Then(const QVariantList &answers) { m_answers += answers; }
    int Pending() const { return m_answers.size(); }

    QStringList log;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (auto *busy = qobject_cast<QProgressDialog *>(watched); busy && event->type() == QEvent::Show)
            log << "busy: " + busy->labelText();
        return false;
    }

private:
    void Poll()
    {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!dialog || qobject_cast<QProgressDialog *>(dialog) || dialog->property("answered").toBool()
            || m_answers.isEmpty())
            return;
        dialog->setProperty("answered", true);
        const QVariant answer = m_answers.takeFirst();
        if (auto *box = qobject_cast<QMessageBox *>(dialog)) {
            log << QStringLiteral("%1 | %2 | %3").arg(int(box->icon())).arg(box->windowTitle(), box->text());
            if (answer.isValid())
                return box->button(QMessageBox::StandardButton(answer.toInt()))->click();
        } else if (auto *input = qobject_cast<QInputDialog *>(dialog)) {
            log << QStringLiteral("input | %1 | %2").arg(input->labelText(), input->textValue());
            input->setTextValue(answer.toString());
        } else {
            log << "dialog | " + dialog->windowTitle();
            if (auto *files = qobject_cast<QFileDialog *>(dialog))
                files->setDirectory(answer.toString());
        }
        answer.isValid() ? dialog->accept() : dialog->reject();
    }

    QTimer m_timer;
    QVariantList m_answers;
};

inline QStringList Strings(const QJsonValue &array) { return array.toVariant().toStringList(); }

inline QStringList Column(const QAbstractItemModel *model, int column = 0, int role = Qt::DisplayRole)
{
    QStringList texts;
    for (int row = 0; row < model->rowCount(); ++row)
        texts << model->index(row, column).data(role).toString();
    return texts;
}

// The window over an in-memory folder.
struct EditorUnderTest
{
    explicit EditorUnderTest(bool withLayouts = true)
    {
        folder.addFile("defs/products/products.json", CanonicalProducts());
        withLayouts ? folder.addFile("defs/layouts/workspace.json", CanonicalLayouts())
                    : folder.addFolder("defs/layouts");
        const QMap<QString, QString> catalogue = {
            {"lic_addon", "Add-on"}, {"lic_basic", "Basic"}, {"lic_pro", "Professional"}};
        window.reset(ProductEditor::CreateProductEditor(folder.path("defs"), folder.reader(), folder.writer(),
                                                        catalogue, nullptr));
    }

    template<typename T = QWidget>
    T *find(const QString &name) const
    {
        return window->findChild<T *>(name);
    }
    QString text(const char *field) const { return find<QLineEdit>(field)->text(); }
    // Clicks the button or triggers the File menu action of that name.
    void run(const QString &name)
    {
        name.startsWith("mp_run_") ? find<QAction>(name)->trigger() : find<QPushButton>(name)->click();
    }
    void setPage(int page) { find<QTabWidget>("mp_widget_tab")->setCurrentIndex(page); }
    int page() const { return find<QTabWidget>("mp_widget_tab")->currentIndex(); }
    QAbstractItemModel *model(const char *view) const { return find<QAbstractItemView>(view)->model(); }

    void show(int page = 1)
    {
        window->resize(1400, 900);
        window->show();
        QApplication::setActiveWindow(window.get());
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        setPage(page);
    }

    // The texts of the named fields and the marks of the named check boxes.
    QString state(const QStringList &names) const
    {
        QStringList values;
        for (const QString &name : names)
            values << find(name)->property(find(name)->inherits("QCheckBox") ? "checked" : "text").toString();
        return values.join('|');
    }

    // The bar above the diff tree, not the tab widget's own.
    QTabBar *diffBar() const { return find("mp_tab_diff")->findChild<QTabBar *>(); }
    QStringList diffTabs() const
    {
        QStringList texts;
        while (texts.size() < diffBar()->count())
            texts << diffBar()->tabText(texts.size());
        return texts;
    }

    const QJsonObject written(const QString &relative = "defs/products/products.json") const
    {
        return QJsonDocument::fromJson(folder.written.value(folder.path(relative))).object();
    }
    // The entry `id` of the saved array `kind` ("feature", "product").
    const QJsonObject saved(const char *kind, const QString &id) const
    {
        for (const QJsonValue &entry : written()[QString(kind) + 's'][kind].toArray())
            if (entry["id"] == id)
                return entry.toObject();
        return {};
    }

    MemoryFolder folder;
    std::unique_ptr<QMainWindow> window;
};

// What every window test holds: the window over a fresh folder and the queue of dialog
// answers, made anew for each test function; every queued answer must have been used.
struct EditorTestState
{
    std::unique_ptr<DialogAnswers> answers;
    std::unique_ptr<EditorUnderTest> editor;

    void start(bool withLayouts = true)
    {
        answers.reset();
        editor = std::make_unique<EditorUnderTest>(withLayouts);
        answers = std::make_unique<DialogAnswers>();
    }
    QAbstractItemView *view(const char *name) const { return editor->find<QAbstractItemView>(name); }
    // What a save of the window writes now, by file.
    QHash<QString, QByteArray> save()
    {
        editor->folder.written.clear();
        editor->run("mp_run_save");
        return editor->folder.written;
    }
    QModelIndex cell(const char *name, int row, int column) const { return editor->model(name)->index(row, column); }

    // The row of `view` with `key` in one of its cells.
    QModelIndex rowOf(const QString &view, const QString &key, int column)
    {
        const QAbstractItemModel *model = editor->model(qPrintable(view));
        for (int row = 0; row < model->rowCount(); ++row)
            for (int cell = 0; cell < model->columnCount(); ++cell)
                if (model->index(row, cell).data().toString() == key)
                    return model->index(row, column < 0 ? cell : column);
        return {};
    }
    // The page that holds `widget` comes to the front, so that it can take the focus.
    void front(QWidget *widget)
    {
        auto *tabs = editor->find<QTabWidget>("mp_widget_tab");
        for (int page = 0; page < tabs->count(); ++page)
            if (tabs->widget(page)->isAncestorOf(widget))
                tabs->setCurrentIndex(page);
    }
    // One step of a user, "verb object argument...": "select VIEW KEY" makes the row holding
    // KEY current, "type FIELD TEXT" replaces a field's text, "tick BOX" clicks a check box,
    // "click VIEW KEY COLUMN" clicks a cell, "set VIEW KEY COLUMN TEXT" edits a table cell,
    // "run NAME [ANSWER]" clicks a button or triggers an action, answering its dialog.
    void act(const QString &step)
    {
        const QStringList words = step.split(' ');
        const QString &verb = words[0];
        if (verb == "select") {
            view(qPrintable(words[1]))->setCurrentIndex(rowOf(words[1], words[2], -1));
        } else if (verb == "type" || verb == "tick") {
            QWidget *field = editor->find(words[1]);
            front(field);
            field->setFocus();
            QVERIFY(field->hasFocus());
            if (verb == "tick") {
                QTest::mouseClick(field, Qt::LeftButton, {}, QPoint(4, field->height() / 2));
            } else {
                static_cast<QLineEdit *>(field)->selectAll();
                QTest::keyClicks(field, words[2]);
            }
            field->clearFocus(); // the field commits as it loses the focus
        } else if (verb == "click") {
            QAbstractItemView *table = view(qPrintable(words[1]));
            front(table);
            const QModelIndex index = rowOf(words[1], words[2], words[3].toInt());
            QVERIFY2(index.isValid(), qPrintable(step));
            QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, table->visualRect(index).center());
        } else if (verb == "set") {
            editor->model(qPrintable(words[1]))->setData(rowOf(words[1], words[2], words[3].toInt()), words[4]);
        } else if (verb == "run") {
            if (words.size() > 2)
                answers->Then({words[2] == "Yes" ? QVariant(int(QMessageBox::Yes)) : QVariant(words[2])});
            editor->run(words[1]);
        }
        QTest::qWait(0);
    }
};
