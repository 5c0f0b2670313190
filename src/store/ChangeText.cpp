#include "store/ChangeText.h"

#include "store/ChangeWording.h"
#include "store/FollowingChanges.h"

namespace ProductEditor {

QString RecordHeading(RecordChange::Record record)
{
    static const char *const headings[] = {"Features", "Products", "Layouts", "Licenses", "Extensions"};
    return QLatin1String(headings[int(record)]);
}

QString ChangesText(const RecordChanges &changes)
{
    const RecordChanges shown = FoldFollowingChanges(changes);
    QString text;
    for (int i = 0; i < shown.size(); ++i) {
        // The comparison keeps each kind of record together.
        if (i == 0 || shown.at(i).record != shown.at(i - 1).record)
            text += RecordHeading(shown.at(i).record) + QStringLiteral(":\n");
        text += QStringLiteral("  ") + WordChange(shown.at(i), ChangeWording::Statement) + QLatin1Char('\n');
    }
    return text;
}

} // namespace ProductEditor
