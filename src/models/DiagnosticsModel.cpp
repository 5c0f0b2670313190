#include "models/DiagnosticsModel.h"

#include <QApplication>
#include <QStyle>

#include <algorithm>

namespace ProductEditor {

namespace {

bool SameRow(const Diagnostic &a, const Diagnostic &b)
{
    return a.code == b.code && a.severity == b.severity && a.file == b.file && a.line == b.line
           && a.column == b.column && a.path == b.path && a.message == b.message && a.subjectId == b.subjectId;
}

QString Plural(int count, const char *word)
{
    return QStringLiteral("%1 %2%3").arg(count).arg(QLatin1String(word)).arg(count == 1 ? "" : "s");
}

} // namespace

DiagnosticsModel::DiagnosticsModel(QObject *parent)
    : QAbstractTableModel(parent)
{
}

void DiagnosticsModel::SetDiagnostics(const Diagnostics &diagnostics, const QString &folder)
{
    const bool sameFolder = m_folder == QDir(folder);
    if (sameFolder && diagnostics.size() == m_diagnostics.size()
        && std::equal(diagnostics.cbegin(), diagnostics.cend(), m_diagnostics.cbegin(), SameRow))
        return;
    // The rows before and after the first and last that differ stay, so a view keeps
    // its selection and scroll position through an edit elsewhere.
    int head = 0;
    while (sameFolder && head < diagnostics.size() && head < m_diagnostics.size()
           && SameRow(diagnostics.at(head), m_diagnostics.at(head)))
        ++head;
    int tail = 0;
    while (sameFolder && tail < diagnostics.size() - head && tail < m_diagnostics.size() - head
           && SameRow(diagnostics.at(diagnostics.size() - 1 - tail), m_diagnostics.at(m_diagnostics.size() - 1 - tail)))
        ++tail;
    if (!sameFolder) {
        beginResetModel();
        m_diagnostics = diagnostics;
        m_folder = QDir(folder);
        endResetModel();
        return;
    }
    const int oldEnd = m_diagnostics.size() - tail;
    if (oldEnd > head) {
        beginRemoveRows(QModelIndex(), head, oldEnd - 1);
        m_diagnostics.remove(head, oldEnd - head);
        endRemoveRows();
    }
    const int newEnd = diagnostics.size() - tail;
    if (newEnd > head) {
        beginInsertRows(QModelIndex(), head, newEnd - 1);
        for (int i = head; i < newEnd; ++i)
            m_diagnostics.insert(i, diagnostics.at(i));
        endInsertRows();
    }
}

QString DiagnosticsModel::Summary() const
{
    const int errors = int(std::count_if(m_diagnostics.cbegin(), m_diagnostics.cend(), [](const Diagnostic &d) {
        return d.severity == Diagnostic::Severity::Error;
    }));
    return Plural(m_diagnostics.size() - errors, "warning") + QStringLiteral(", ") + Plural(errors, "error");
}

int DiagnosticsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_diagnostics.size();
}

int DiagnosticsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant DiagnosticsModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Diagnostic &diagnostic = m_diagnostics.at(index.row());
    const bool error = diagnostic.severity == Diagnostic::Severity::Error;
    if (role == Qt::DecorationRole && index.column() == SeverityColumn)
        return QApplication::style()->standardIcon(error ? QStyle::SP_MessageBoxCritical
                                                         : QStyle::SP_MessageBoxWarning);
    if (role == Qt::ToolTipRole && index.column() == LocationColumn)
        return diagnostic.path;
    if (role != Qt::DisplayRole)
        return {};
    switch (index.column()) {
    case SeverityColumn: return error ? QStringLiteral("error") : QStringLiteral("warning");
    case CodeColumn: return diagnostic.code;
    case LocationColumn: return Location(diagnostic);
    case MessageColumn: return diagnostic.message;
    default: return {};
    }
}

QVariant DiagnosticsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    static const char *const titles[] = {"Severity", "Code", "Where", "Finding"};
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= ColumnCount)
        return QAbstractTableModel::headerData(section, orientation, role);
    return QLatin1String(titles[section]);
}

// A value that no file holds yet (added by an edit) is placed by its path.
QString DiagnosticsModel::Location(const Diagnostic &diagnostic) const
{
    const QString file = QDir::toNativeSeparators(m_folder.relativeFilePath(diagnostic.file));
    if (diagnostic.line <= 0)
        return QStringLiteral("%1 %2").arg(file, diagnostic.path);
    return QStringLiteral("%1:%2:%3").arg(file).arg(diagnostic.line).arg(diagnostic.column);
}

} // namespace ProductEditor
