#pragma once

#include "json/QJsonDiffTreeItem.h"

#include <QCommandLineParser>
#include <QJsonObject>
#include <QString>
#include <QTextStream>

#include <memory>
#include <vector>

// One compared document of a diff or compare-products run.
struct DiffReport
{
    QString name;
    std::unique_ptr<ProductEditor::QJsonDiffTreeItem> tree; // null when the sides do not differ
};

enum class DiffFormat { Text, Json };

// --format text|json of diff and compare-products.
void AddFormatOption(QCommandLineParser &parser);

// Reads --format; prints the reason, naming the formats the command takes, and returns
// false for an unknown format.
bool ParseDiffFormat(const QString &text, DiffFormat *format, const char *choices = "text or json");

// Compares left with right; the report holds a tree only when they differ.
DiffReport CompareDocuments(const QString &name, const QJsonObject &left, const QJsonObject &right);

// A diff node and its subtree as the command line writes them in JSON.
QJsonObject DiffNodeToJson(const ProductEditor::QJsonDiffTreeItem &node);

// Prints the reports that hold differences: a JSON object keyed by document name
// (in report order), or an indented text tree per document under a legend line
// naming the two sides. Returns whether any report holds differences.
bool PrintDiffReports(QTextStream &out, const std::vector<DiffReport> &reports, DiffFormat format,
                      const QString &leftSide, const QString &rightSide);
