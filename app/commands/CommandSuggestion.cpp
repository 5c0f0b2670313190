#include "commands/CommandSuggestion.h"

#include <QVector>

#include <algorithm>

namespace {

// Levenshtein distance, with a swap of two neighbours counted as one edit.
int EditDistance(const QString &a, const QString &b)
{
    const int n = a.size();
    const int m = b.size();
    QVector<QVector<int>> d(n + 1, QVector<int>(m + 1, 0));
    for (int i = 0; i <= n; ++i)
        d[i][0] = i;
    for (int j = 0; j <= m; ++j)
        d[0][j] = j;
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= m; ++j) {
            const int cost = a.at(i - 1) == b.at(j - 1) ? 0 : 1;
            d[i][j] = std::min({d[i - 1][j] + 1, d[i][j - 1] + 1, d[i - 1][j - 1] + cost});
            if (i > 1 && j > 1 && a.at(i - 1) == b.at(j - 2) && a.at(i - 2) == b.at(j - 1))
                d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 1);
        }
    }
    return d[n][m];
}

} // namespace

QString NearestCommand(const QString &word, const QStringList &commands)
{
    QString best;
    int bestDistance = 3;
    for (const QString &command : commands) {
        const int distance = EditDistance(word.toLower(), command);
        // At most half the word may differ, so that a short name like log is still offered.
        if (distance < bestDistance && distance * 2 <= word.size()) {
            best = command;
            bestDistance = distance;
        }
    }
    return best;
}
