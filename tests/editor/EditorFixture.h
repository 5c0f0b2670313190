#pragma once

#include "MemoryFolder.h"
#include "editor/CreateProductEditor.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QJsonDocument>
#include <QMainWindow>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QTabBar>
#include <QTest>
#include <QTimer>

#include <functional>
#include <memory>

// A small definition folder in canonical form, so that regenerating it right
// after loading changes nothing.
inline QByteArray CanonicalProducts()
{
    return R"({
    "extensions": {
        "extension": [
            {"id": "step", "title": "STEP", "ext": "*.step", "cad_support": true,
             "load_as_part": false, "multiple_parts_support": true, "slices_support": false},
            {"id": "stl", "title": "Stereolithography", "ext": "*.stl", "cad_support": false,
             "load_as_part": true, "multiple_parts_support": false, "slices_support": false}
        ],
        "lic_coveradge": {
            "export": [{"id": "stl", "lic": ["lic_pro"]}],
            "import": [{"id": "stl", "lic": ["lic_basic", "lic_pro"]}]
        }
    },
    "features": {
        "feature": [
            {"id": "file_open", "title": "Open", "tooltip": "Open a file", "statustip": "Opens a file"},
            {"id": "file_save", "title": "Save"},
            {"id": "mesh_cut", "title": "Cut", "emergency": true, "visual": false}
        ]
    },
    "products": {
        "product": [
            {"id": "basic", "profile_suffix": "_b", "modes": ["main"],
             "licensing": {"base": "lic_basic", "specific": [{"id": "file_save", "licenses": ["lic_addon"]}]},
             "extensions": {"export": [], "export_as_project": [], "export_as_scene": [],
                            "import": ["stl"], "import_as_project": [], "open": ["stl"]},
             "features": ["file_open", "file_save"]},
            {"id": "pro", "profile_suffix": "_p", "modes": ["expert", "main"],
             "licensing": {"base": "lic_pro", "specific": []},
             "extensions": {"export": ["stl"], "export_as_project": [], "export_as_scene": [],
                            "import": ["step", "stl"], "import_as_project": [], "open": ["step", "stl"]},
             "features": ["file_open", "file_save", "mesh_cut"]}
        ]
    }
})";
}

inline QByteArray CanonicalLayouts()
{
    return R"({"layouts": {
        "expert": {"extensions": {"export": [], "export_as_project": [], "export_as_scene": [],
                                  "import": ["step"], "import_as_project": [], "open": []},
                   "features": ["mesh_cut"]},
        "main": {"extensions": {"export": [], "export_as_project": [], "export_as_scene": [],
                                "import": ["stl"], "import_as_project": [], "open": ["stl"]},
                 "features": ["file_open", "file_save"]}
    }})";
}

inline QMap<QString, QString> Catalogue()
{
    return {{QStringLiteral("lic_addon"), QStringLiteral("Add-on")},
            {QStringLiteral("lic_basic"), QStringLiteral("Basic")},
            {QStringLiteral("lic_pro"), QStringLiteral("Professional")}};
}

// Answers modal dialogs as they open, in order, from the event loop that the
// dialog runs; records what each dialog (busy dialogs included) showed.
class DialogAnswers : public QObject
{
public:
    using Answer = std::function<void(QWidget *)>;

    DialogAnswers()
    {
        qApp->installEventFilter(this);
        m_timer.setInterval(5);
        QObject::connect(&m_timer, &QTimer::timeout, [this] { Poll(); });
        m_timer.start();
    }
    ~DialogAnswers() override { qApp->removeEventFilter(this); }

    DialogAnswers &Then(Answer answer)
    {
        m_answers << std::move(answer);
        return *this;
    }
    int Pending() const { return m_answers.size(); }

    QStringList log;

    static Answer Press(QMessageBox::StandardButton button)
    {
        return [button](QWidget *dialog) {
            if (auto *box = qobject_cast<QMessageBox *>(dialog))
                box->button(button)->click();
        };
    }
    static Answer Enter(const QString &text)
    {
        return [text](QWidget *dialog) {
            if (auto *input = qobject_cast<QInputDialog *>(dialog)) {
                input->setTextValue(text);
                input->accept();
            }
        };
    }
    static Answer ChooseFolder(const QString &path)
    {
        return [path](QWidget *dialog) {
            if (auto *files = qobject_cast<QFileDialog *>(dialog)) {
                files->setDirectory(path);
                static_cast<QDialog *>(files)->accept();
            }
        };
    }
    static Answer Cancel()
    {
        return [](QWidget *dialog) { static_cast<QDialog *>(dialog)->reject(); };
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show) {
            if (auto *busy = qobject_cast<QProgressDialog *>(watched))
                log << QStringLiteral("busy: ") + busy->labelText();
        }
        return false;
    }

private:
    void Poll()
    {
        QWidget *dialog = QApplication::activeModalWidget();
        if (!dialog || qobject_cast<QProgressDialog *>(dialog) || dialog->property("answered").toBool()
            || m_answers.isEmpty())
            return;
        dialog->setProperty("answered", true);
        if (auto *box = qobject_cast<QMessageBox *>(dialog))
            log << QStringLiteral("%1 | %2 | %3").arg(int(box->icon())).arg(box->windowTitle(), box->text());
        else if (auto *input = qobject_cast<QInputDialog *>(dialog))
            log << QStringLiteral("input | %1 | %2").arg(input->labelText(), input->textValue());
        else
            log << QStringLiteral("dialog | %1").arg(dialog->windowTitle());
        m_answers.takeFirst()(dialog);
    }

    QTimer m_timer;
    QList<Answer> m_answers;
};

// The window over an in-memory folder.
struct EditorUnderTest
{
    explicit EditorUnderTest(bool withLayouts = true)
    {
        folder.addFile(QStringLiteral("defs/products/products.json"), CanonicalProducts());
        if (withLayouts)
            folder.addFile(QStringLiteral("defs/layouts/workspace.json"), CanonicalLayouts());
        else
            folder.addFolder(QStringLiteral("defs/layouts"));
        window.reset(ProductEditor::CreateProductEditor(folder.path(QStringLiteral("defs")), folder.reader(),
                                                        folder.writer(), Catalogue(), nullptr));
    }

    template<typename T = QWidget>
    T *find(const char *name) const
    {
        return window->findChild<T *>(QLatin1String(name));
    }

    void show()
    {
        window->resize(1400, 900);
        window->show();
        QApplication::setActiveWindow(window.get());
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
    }

    void click(const char *view, int row, int column)
    {
        auto *v = find<QAbstractItemView>(view);
        const QModelIndex index = v->model()->index(row, column);
        v->scrollTo(index);
        QTest::mouseClick(v->viewport(), Qt::LeftButton, {}, v->visualRect(index).center());
    }

    // The bar above the diff tree, not the tab widget's own.
    QTabBar *diffTabs() const { return find("mp_tab_diff")->findChild<QTabBar *>(); }

    void trigger(const char *action) { find<QAction>(action)->trigger(); }

    QJsonObject written(const QString &relative = QStringLiteral("defs/products/products.json")) const
    {
        return QJsonDocument::fromJson(folder.written.value(folder.path(relative))).object();
    }

    MemoryFolder folder;
    std::unique_ptr<QMainWindow> window;
};
