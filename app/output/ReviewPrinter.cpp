#include "output/ReviewPrinter.h"

#include "store/ChangeWording.h"

using namespace ProductEditor;

namespace {

QString Section(RecordChange::Record record)
{
    switch (record) {
    case RecordChange::Record::Feature: return QStringLiteral("Features");
    case RecordChange::Record::Product: return QStringLiteral("Products");
    case RecordChange::Record::Layout: return QStringLiteral("Layouts");
    case RecordChange::Record::License: return QStringLiteral("Licenses");
    case RecordChange::Record::Extension: break;
    }
    return QStringLiteral("Extensions");
}

} // namespace

void PrintReview(QTextStream &out, const RecordChanges &changes, const QString &leftSide, const QString &rightSide)
{
    if (changes.isEmpty())
        return;
    out << "## Definition changes: " << leftSide << " -> " << rightSide << "\n";
    for (int i = 0; i < changes.size(); ++i) {
        // The comparison keeps each kind of record together.
        if (i == 0 || changes.at(i).record != changes.at(i - 1).record)
            out << "\n### " << Section(changes.at(i).record) << "\n\n";
        out << "- " << WordChange(changes.at(i), ChangeWording::Statement) << '\n';
    }
    out << '\n' << changes.size() << (changes.size() == 1 ? " change" : " changes") << '\n';
}
