#pragma once

#include "store/ComparedDocument.h"

#include <QObject>
#include <QVector>

#include <functional>
#include <memory>

class QTabBar;

namespace Ui {
class VantixJSONEditorClass;
}

namespace ProductEditor {

class DiffReview;
class Model;
class VantixFeaturesDiffModel;

// The "Changes" page: one diff per compared document in a tab bar above the
// diff tree, rebuilt by Update and by the File menu's comparisons.
class ChangesPage : public QObject
{
public:
    ChangesPage(Ui::VantixJSONEditorClass &ui, Model &model);
    ~ChangesPage() override;

    QTabBar *TabBar() const;
    // Shows the diff of tab `index` in the tree, expanded and measured.
    void ShowDiff(int index);
    // "Compare...": the loaded documents against the last regenerated ones.
    void CompareDocuments();
    // "Compare products...": a diff that cannot be applied.
    void CompareProducts(const QString &leftId, const QString &rightId);

private:
    enum class Refresh { AtEnd, PerLayout };
    using Prepare = std::function<void(VantixFeaturesDiffModel &)>;

    void _Rebuild(const QVector<ComparedDocument> &documents, Refresh refresh, const Prepare &prepare = {});
    void _Show(VantixFeaturesDiffModel *model);
    void _ClearTabs();
    void _Update();
    void _ApplyChanges();

    Ui::VantixJSONEditorClass &m_ui;
    Model &m_model;
    QTabBar *m_tabBar = nullptr; // owned by the Changes page widget
    std::unique_ptr<DiffReview> m_review;
};

} // namespace ProductEditor
