#pragma once

#include <QString>

class QAbstractItemView;

namespace Ui {
class VantixJSONEditorClass;
}

namespace ProductEditor {

struct Diagnostic;
class FeaturesPage;
class Model;

// Goes to what a problem names: its feature, product or extension becomes current on
// its page; a problem about a layout file shows the layouts with one of the file's
// current, and one about the products file as a whole shows the generated document.
class ProblemOpener
{
public:
    ProblemOpener(Ui::VantixJSONEditorClass &ui, Model &model, FeaturesPage &features);

    void Open(const Diagnostic &diagnostic);

private:
    void _OpenFile(const Diagnostic &diagnostic);
    // Makes the row whose `column` reads `text` current; false when none does.
    static bool _Select(QAbstractItemView *view, int column, const QString &text);

    Ui::VantixJSONEditorClass &m_ui;
    Model &m_model;
    FeaturesPage &m_features;
};

} // namespace ProductEditor
