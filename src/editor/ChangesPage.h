#pragma once

#include "editor/EditSteps.h"
#include "store/ComparedDocument.h"
#include "store/RecordsSnapshot.h"

#include <QJsonObject>
#include <QMap>
#include <QObject>
#include <QStringList>
#include <QVector>

#include <memory>
#include <optional>

class QLabel;
class QTabBar;

namespace Ui {
class VantixJSONEditorClass;
}

namespace ProductEditor {

class ChangeSummary;
class DiffReview;
class Model;
class VantixFeaturesDiffModel;

// The "Changes" page: one diff per compared document in a tab bar above the
// diff tree, rebuilt by Update and by the File menu's comparisons.
class ChangesPage : public QObject
{
public:
    // A document with a tab, as it was compared.
    struct Shown
    {
        ComparedDocument document;
        QStringList headers; // empty for the default ones
        bool editable = true;
    };

    // What the page shows and what it was compared from, kept with each undo step
    // so that going back to a step shows the page as it was there.
    struct State
    {
        quint64 build = 0; // which rebuild made the tabs
        QVector<Shown> shown;
        QVector<QVector<int>> ticks;
        int currentTab = -1;
        bool treeShown = false;
        bool applyShown = false;
        bool applicable = true;
        QString compared; // what was compared, in words; empty before the first comparison
        std::optional<RecordsSnapshot> comparedRecords;
        std::optional<RecordsSnapshot> regeneratedRecords;
        EditSteps::Step comparedStep = -1;
        EditSteps::Step regeneratedStep = -1;
        QJsonObject productsResult;
        QMap<QString, QJsonObject> layoutsResult;
    };

    ChangesPage(Ui::VantixJSONEditorClass &ui, Model &model, const EditSteps &steps);
    ~ChangesPage() override;

    QTabBar *TabBar() const;
    // Shows the diff of tab `index` in the tree, expanded and measured.
    void ShowDiff(int index);
    // "Compare...": the loaded documents against the last regenerated ones.
    void CompareDocuments();
    // "Compare products...": a diff that cannot be applied.
    void CompareProducts(const QString &leftId, const QString &rightId);

    // The store regenerated its documents from the records as they are (a save).
    void Regenerated();
    // The store holds a folder as loaded.
    void Loaded();
    // Tells on the page whether the shown differences still describe the records, and
    // if not, how many edits ago they did.
    void Recheck();
    // The differences on the page, as "Apply changes" takes them.
    int DifferenceCount() const;
    State Capture() const;
    void Restore(const State &state);

private:
    enum class Refresh { AtEnd, PerLayout };

    void _Rebuild(const QVector<ComparedDocument> &documents, Refresh refresh, const QStringList &headers = {},
                  bool editable = true);
    void _AddTab(const Shown &shown, VantixFeaturesDiffModel *model);
    void _Compared(const QString &what, std::optional<RecordsSnapshot> records, EditSteps::Step step);
    void _Show(VantixFeaturesDiffModel *model);
    void _ClearTabs();
    void _Update();
    void _ApplyChanges();

    Ui::VantixJSONEditorClass &m_ui;
    Model &m_model;
    const EditSteps &m_steps;
    QTabBar *m_tabBar = nullptr; // owned by the Changes page widget
    std::unique_ptr<DiffReview> m_review;
    std::unique_ptr<ChangeSummary> m_summary;
    QLabel *m_notice; // owned by the Changes page widget
    quint64 m_build = 0;
    QVector<Shown> m_shown;
    QString m_compared;
    // The records "Apply changes" left, and how many of how many differences it took from the right.
    struct Applied
    {
        RecordsSnapshot records;
        int taken = 0;
        int total = 0;
    };
    std::optional<Applied> m_applied;
    std::optional<RecordsSnapshot> m_comparedRecords;    // the records the shown differences describe
    std::optional<RecordsSnapshot> m_regeneratedRecords; // the records the store's documents were made from
    EditSteps::Step m_comparedStep = -1;    // the step of the shown differences
    EditSteps::Step m_regeneratedStep = -1; // the step of the store's documents
};

} // namespace ProductEditor
