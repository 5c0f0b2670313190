#pragma once

#include "ProductEditorExport.h"
#include "check/Diagnostic.h"

#include <QAbstractTableModel>
#include <QDir>

namespace ProductEditor {

// The problems a check found, one per row: severity, code, where, and the message.
// Where is file:line:column, or, for a problem only the edited records have, the
// record it is about.
class PRODUCT_EDITOR_EXPORT ProblemsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { SeverityColumn, CodeColumn, LocationColumn, MessageColumn, ColumnCount };
    // What a view sorts by: errors first, positions in line order.
    static constexpr int SortRole = Qt::UserRole;

    explicit ProblemsModel(QObject *parent = nullptr);

    // Files are shown relative to `folder`. Rows change only where the findings do.
    void SetDiagnostics(const Diagnostics &diagnostics, const QString &folder);
    const Diagnostics &GetDiagnostics() const { return m_diagnostics; }
    // "3 warnings, 1 error", as the command line sums up.
    QString Summary() const;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    QString Location(const Diagnostic &diagnostic) const;
    QVariant SortKey(const Diagnostic &diagnostic, int column) const;

    Diagnostics m_diagnostics;
    QDir m_folder;
};

} // namespace ProductEditor
