#pragma once

#include <QObject>

namespace Ui {
class VantixJSONEditorClass;
}

namespace ProductEditor {

class Model;

// The "Result" page: the regenerated products document as a tree.
class ResultPage : public QObject
{
public:
    ResultPage(Ui::VantixJSONEditorClass &ui, Model &model);
};

} // namespace ProductEditor
