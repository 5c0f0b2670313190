#include "models/ProblemsModel.h"

#include <QApplication>
#include <QStyle>

#include <algorithm>

namespace ProductEditor {

namespace {

bool SameRow(const Diagnostic &a, const Diagnostic &b)
{
    return a.code == b.code && a.severity == b.severity && a.file == b.file && a.line == b.line
           && a.column == b.column && a.path == b.path && a.message == b.message && a.subjectId == b.subjectId
           && a.droppedBySave == b.droppedBySave;
}

QString Plural(int count, const char *word)
{
    return QStringLiteral("%1 %2%3").arg(count).arg(QLatin1String(word)).arg(count == 1 ? "" : "s");
}

} // namespace

ProblemsModel::ProblemsModel(QObject *parent)
    : QAbstractTableModel(parent)
{
}

void ProblemsModel::SetDiagnostics(const Diagnostics &diagnostics, const QString &folder)
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

QString ProblemsModel::Summary() const
{
    const int errors = int(std::count_if(m_diagnostics.cbegin(), m_diagnostics.cend(), [](const Diagnostic &d) {
        return d.severity == Diagnostic::Severity::Error;
    }));
    return Plural(m_diagnostics.size() - errors, "warning") + QStringLiteral(", ") + Plural(errors, "error");
}

int ProblemsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_diagnostics.size();
}

int ProblemsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ProblemsModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Diagnostic &diagnostic = m_diagnostics.at(index.row());
    const bool error = diagnostic.severity == Diagnostic::Severity::Error;
    if (role == Qt::DecorationRole && index.column() == SeverityColumn)
        return QApplication::style()->standardIcon(error ? QStyle::SP_MessageBoxCritical
                                                         : QStyle::SP_MessageBoxWarning);
    if (role == Qt::ToolTipRole && index.column() == LocationColumn)
        return QDir::toNativeSeparators(m_folder.relativeFilePath(diagnostic.file)) + QLatin1Char(' ') + diagnostic.path;
    if (role == SortRole)
        return SortKey(diagnostic, index.column());
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

QVariant ProblemsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    static const char *const titles[] = {"Severity", "Code", "Where", "Message"};
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= ColumnCount)
        return QAbstractTableModel::headerData(section, orientation, role);
    return QLatin1String(titles[section]);
}

// A problem that no file holds yet (an edit made it) is placed at its record, or at
// its file and path when no record is named; one a save dropped where the file had it.
QString ProblemsModel::Location(const Diagnostic &diagnostic) const
{
    static const char *const kinds[] = {"", "feature", "product", "extension"};
    const QString file = QDir::toNativeSeparators(m_folder.relativeFilePath(diagnostic.file));
    if (diagnostic.line > 0 && diagnostic.droppedBySave)
        return QStringLiteral("%1:%2:%3 (dropped by the last save)").arg(file).arg(diagnostic.line).arg(diagnostic.column);
    if (diagnostic.line > 0)
        return QStringLiteral("%1:%2:%3").arg(file).arg(diagnostic.line).arg(diagnostic.column);
    if (diagnostic.subject == Diagnostic::Subject::None)
        return QStringLiteral("%1 %2 (edited, in no file yet)").arg(file, diagnostic.path);
    return QStringLiteral("%1 \"%2\" (edited, in no file yet)")
        .arg(QLatin1String(kinds[int(diagnostic.subject)]), diagnostic.subjectId);
}

QVariant ProblemsModel::SortKey(const Diagnostic &diagnostic, int column) const
{
    switch (column) {
    case SeverityColumn: return diagnostic.severity == Diagnostic::Severity::Error ? 0 : 1;
    case CodeColumn: return diagnostic.code;
    case LocationColumn:
        if (diagnostic.line <= 0)
            return QStringLiteral("\uffff") + Location(diagnostic); // after every file
        return QStringLiteral("%1\n%2:%3")
            .arg(m_folder.relativeFilePath(diagnostic.file))
            .arg(diagnostic.line, 9, 10, QLatin1Char('0'))
            .arg(diagnostic.column, 9, 10, QLatin1Char('0'));
    case MessageColumn: return diagnostic.message;
    default: return {};
    }
}

} // namespace ProductEditor
