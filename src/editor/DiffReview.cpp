#include "editor/DiffReview.h"

#include "diff/VantixFeaturesDiffModel.h"
#include "editor/DiffText.h"
#include "json/QJsonDiffTreeItem.h"
#include "ui_VantixJSONEditor.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabBar>

#include <algorithm>

namespace ProductEditor {

namespace {

const int LeftColumn = 1;
const int RightColumn = 2;
const int Choosable = QJsonDiffTreeItem::Choosable;

VantixFeaturesDiffModel *ModelOf(const QTabBar *tabBar, int index)
{
    return qobject_cast<VantixFeaturesDiffModel *>(tabBar->tabData(index).value<QObject *>());
}

const QJsonDiffTreeItem *NodeOf(const QModelIndex &index)
{
    if (!index.isValid())
        return nullptr;
    return static_cast<const QJsonDiffTreeItem *>(static_cast<const QJsonTreeItem *>(index.internalPointer()));
}

// Every row of a model in the order the tree shows them, tagged with its tab.
struct Row
{
    int tab;
    QModelIndex index;
};

void CollectRows(int tab, const QAbstractItemModel *model, const QModelIndex &parent, QVector<Row> &rows)
{
    for (int row = 0; row < model->rowCount(parent); ++row) {
        const QModelIndex index = model->index(row, 0, parent);
        rows.append({tab, index});
        CollectRows(tab, model, index, rows);
    }
}

void CollectNodes(const QJsonTreeItem *node, QVector<const QJsonDiffTreeItem *> &nodes)
{
    for (int i = 0; node && i < node->childCount(); ++i) {
        nodes << static_cast<const QJsonDiffTreeItem *>(node->child(i));
        CollectNodes(node->child(i), nodes);
    }
}

QModelIndex IndexOf(const QAbstractItemModel *model, const QJsonTreeItem *node, int column)
{
    const QJsonTreeItem *parent = node->parent();
    return model->index(node->row(), column,
                        parent && parent->parent() ? IndexOf(model, parent, 0) : QModelIndex());
}

QPushButton *AddButton(QHBoxLayout *row, const char *name, const QString &text, const QKeySequence &shortcut = {})
{
    auto *button = new QPushButton(text);
    button->setObjectName(QLatin1String(name));
    if (!shortcut.isEmpty()) {
        button->setShortcut(shortcut);
        button->setToolTip(QStringLiteral("%1 (%2)").arg(text, shortcut.toString(QKeySequence::NativeText)));
    }
    row->addWidget(button);
    return button;
}

} // namespace

DiffReview::DiffReview(Ui::VantixJSONEditorClass &ui, QTabBar *tabBar)
    : m_ui(ui)
    , m_tabBar(tabBar)
    , m_summary(new QLabel(DiffText::NotCompared()))
    , m_details(new QPlainTextEdit)
{
    auto *row = new QHBoxLayout;
    m_summary->setObjectName(QStringLiteral("mp_lbl_diff_summary"));
    m_summary->setWordWrap(true);
    row->addWidget(m_summary, 1);
    QPushButton *previous = AddButton(row, "mp_btn_previous_difference", QStringLiteral("Previous"),
                                      QKeySequence(Qt::SHIFT | Qt::Key_F8));
    QPushButton *next = AddButton(row, "mp_btn_next_difference", QStringLiteral("Next"), QKeySequence(Qt::Key_F8));
    QPushButton *left = AddButton(row, "mp_btn_take_left", QStringLiteral("Take all left"));
    QPushButton *right = AddButton(row, "mp_btn_take_right", QStringLiteral("Take all right"));
    ui.verticalLayout_4->addLayout(row);

    m_details->setObjectName(QStringLiteral("mp_edt_diff_details"));
    m_details->setReadOnly(true);
    m_details->setMaximumHeight(140);
    m_details->setPlaceholderText(QStringLiteral("Select a difference to see it in full."));
    ui.verticalLayout_4->addWidget(m_details);

    connect(previous, &QPushButton::clicked, this, [this] { Step(-1); });
    connect(next, &QPushButton::clicked, this, [this] { Step(+1); });
    connect(left, &QPushButton::clicked, this, [this] { TakeAll(LeftColumn); });
    connect(right, &QPushButton::clicked, this, [this] { TakeAll(RightColumn); });
}

void DiffReview::Recount(bool applicable)
{
    m_applicable = applicable;
    int total = 0;
    int documents = 0;
    for (int tab = 0; tab < m_tabBar->count(); ++tab) {
        const VantixFeaturesDiffModel *model = ModelOf(m_tabBar, tab);
        const int count = model ? DiffText::CountDifferences(model->GetRoot()) : 0;
        m_tabBar->setTabToolTip(tab, DiffText::Differences(count));
        total += count;
        documents += count > 0 ? 1 : 0;
    }
    m_total = total;
    m_counted = total == 0 ? QStringLiteral("No differences")
                           : QStringLiteral("%1 in %2").arg(DiffText::Differences(total),
                                                            documents == 1 ? QStringLiteral("1 document")
                                                                           : QStringLiteral("%1 documents").arg(documents));
    _ShowSummary();
    _ShowDetails(m_ui.mp_tree_diff->currentIndex());
}

bool DiffReview::Applicable() const
{
    return m_applicable;
}

int DiffReview::DifferenceCount() const
{
    return m_total;
}

void DiffReview::SetStanding(Standing standing, int edits)
{
    m_standing = standing;
    m_edits = edits;
    _ShowSummary();
}

void DiffReview::SetApplied(int taken, int total)
{
    m_taken = taken;
    m_appliedOf = total;
    SetStanding(Applied);
}

// A count that no longer describes the definitions is not shown at all, so it cannot be taken as current.
void DiffReview::_ShowSummary()
{
    switch (m_standing) {
    case NotCompared: m_summary->setText(DiffText::NotCompared()); break;
    case Current: m_summary->setText(m_counted); break;
    case OutOfDate: m_summary->setText(DiffText::OutOfDate(m_edits)); break;
    case Applied: m_summary->setText(DiffText::Applied(m_taken, m_appliedOf)); break;
    }
    QFont font = m_summary->font();
    font.setBold(m_standing == OutOfDate);
    m_summary->setFont(font);
}

void DiffReview::Follow(VantixFeaturesDiffModel *model)
{
    disconnect(m_current);
    disconnect(m_ticks);
    if (QItemSelectionModel *selection = m_ui.mp_tree_diff->selectionModel())
        m_current = connect(selection, &QItemSelectionModel::currentChanged, this, &DiffReview::_ShowDetails);
    if (model)
        m_ticks = connect(model, &QAbstractItemModel::dataChanged, this,
                          [this] { _ShowDetails(m_ui.mp_tree_diff->currentIndex()); });
    _ShowDetails(m_ui.mp_tree_diff->currentIndex());
}

void DiffReview::Step(int direction)
{
    QVector<Row> rows;
    for (int tab = 0; tab < m_tabBar->count(); ++tab) {
        if (const VantixFeaturesDiffModel *model = ModelOf(m_tabBar, tab))
            CollectRows(tab, model, QModelIndex(), rows);
    }
    if (rows.isEmpty())
        return;
    const QModelIndex current = m_ui.mp_tree_diff->currentIndex();
    int at = direction > 0 ? -1 : rows.size();
    for (int i = 0; i < rows.size(); ++i) {
        if (rows[i].tab == m_tabBar->currentIndex() && rows[i].index == current.sibling(current.row(), 0)) {
            at = i;
            break;
        }
    }
    for (int step = 1; step <= rows.size(); ++step) {
        const Row &row = rows[((at + direction * step) % rows.size() + rows.size()) % rows.size()];
        if (row.index.model()->rowCount(row.index) > 0)
            continue; // a group of differences, not one
        m_tabBar->setCurrentIndex(row.tab);
        QTreeView *tree = m_ui.mp_tree_diff;
        for (QModelIndex parent = row.index.parent(); parent.isValid(); parent = parent.parent())
            tree->expand(parent);
        tree->selectionModel()->setCurrentIndex(row.index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        tree->scrollTo(row.index);
        return;
    }
}

void DiffReview::TakeAll(int column)
{
    VantixFeaturesDiffModel *model = ModelOf(m_tabBar, m_tabBar->currentIndex());
    if (!model)
        return;
    QVector<Row> rows;
    CollectRows(m_tabBar->currentIndex(), model, QModelIndex(), rows);
    for (const Row &row : rows) {
        if (NodeOf(row.index)->diffType() & Choosable)
            model->setData(row.index.sibling(row.index.row(), column), Qt::Checked, Qt::CheckStateRole);
    }
}

// Walks the trees themselves: a large diff has more rows than its model should make indexes for.
QVector<QVector<int>> DiffReview::Ticks() const
{
    QVector<QVector<int>> ticks;
    for (int tab = 0; tab < m_tabBar->count(); ++tab) {
        QVector<const QJsonDiffTreeItem *> nodes;
        if (const VantixFeaturesDiffModel *model = ModelOf(m_tabBar, tab))
            CollectNodes(model->GetRoot(), nodes);
        QVector<int> right;
        for (int i = 0; i < nodes.size(); ++i) {
            if (nodes[i]->action() == UseRight)
                right << i;
        }
        ticks << right;
    }
    return ticks;
}

void DiffReview::SetTicks(const QVector<QVector<int>> &ticks)
{
    for (int tab = 0; tab < m_tabBar->count() && tab < ticks.size(); ++tab) {
        VantixFeaturesDiffModel *model = ModelOf(m_tabBar, tab);
        if (!model)
            continue;
        QVector<const QJsonDiffTreeItem *> nodes;
        CollectNodes(model->GetRoot(), nodes);
        for (int i = 0; i < nodes.size(); ++i) {
            const bool right = std::binary_search(ticks[tab].cbegin(), ticks[tab].cend(), i);
            if (right != (nodes[i]->action() == UseRight))
                model->setData(IndexOf(model, nodes[i], right ? RightColumn : LeftColumn), Qt::Checked,
                               Qt::CheckStateRole);
        }
    }
}

void DiffReview::SetDocuments(std::function<ComparedDocument(int tab)> documentOf)
{
    m_documentOf = std::move(documentOf);
}

void DiffReview::_ShowDetails(const QModelIndex &current)
{
    const QJsonDiffTreeItem *node = NodeOf(current);
    if (!node) {
        m_details->clear();
        return;
    }
    const ComparedDocument document = m_documentOf ? m_documentOf(m_tabBar->currentIndex()) : ComparedDocument();
    m_details->setPlainText(DiffText::Details(*node, m_applicable, document.left, document.right));
}

} // namespace ProductEditor
