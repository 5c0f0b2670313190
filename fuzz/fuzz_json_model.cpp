// Loads the input into the JSON tree models and serialises it back.
#include "FuzzSupport.h"

#include "json/QSmartJsonModel.h"
#include "json/VantixResultModel.h"

#include <QAbstractItemModelTester>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace ProductEditor;

namespace {

// What the tree gives back: the same shape, every scalar as its text.
QJsonValue AsText(const QJsonValue &value)
{
    if (value.isObject()) {
        QJsonObject object;
        const QJsonObject source = value.toObject();
        for (auto it = source.constBegin(); it != source.constEnd(); ++it)
            object.insert(it.key(), AsText(it.value()));
        return object;
    }
    if (value.isArray()) {
        QJsonArray array;
        for (const QJsonValue &element : value.toArray())
            array.append(AsText(element));
        return array;
    }
    return QJsonValue(value.toVariant().toString());
}

QJsonDocument AsTextDocument(const QJsonDocument &document)
{
    if (document.isArray())
        return QJsonDocument(AsText(document.array()).toArray());
    return QJsonDocument(AsText(document.object()).toObject());
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    FuzzSupport::SilenceMessages();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), int(size));
    const QJsonDocument parsed = QJsonDocument::fromJson(input);

    QSmartJsonModel model(QByteArray("{\"before\":[1]}"));
    const QJsonDocument before = model.json();
    bool loaded = false;
    {
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
        loaded = model.loadJson(input);
    }
    if (loaded == parsed.isNull())
        FuzzSupport::Fail("loadJson succeeds exactly for parsable documents", parsed.isNull() ? "false" : "true",
                          loaded ? "true" : "false");
    if (!loaded) {
        if (model.json() != before)
            FuzzSupport::Fail("a failed load keeps the tree", before.toJson(), model.json().toJson());
        return 0;
    }

    const QJsonDocument serialised = model.json();
    const QJsonDocument expected = AsTextDocument(parsed);
    if (serialised != expected)
        FuzzSupport::Fail("the tree keeps the document's shape and texts", expected.toJson(), serialised.toJson());

    // Once every scalar is text, a second round trip changes nothing.
    QSmartJsonModel again(serialised.toJson());
    if (!FuzzSupport::HasStringStartingWithBom(serialised.toJson()) && again.json() != serialised)
        FuzzSupport::Fail("serialised form is a fixed point", serialised.toJson(), again.json().toJson());

    if (parsed.isObject()) {
        VantixResultModel result;
        {
            QAbstractItemModelTester tester(&result, QAbstractItemModelTester::FailureReportingMode::Fatal);
            result.SetJson(parsed.object());
        }
        if (QJsonDocument(result.GetJson()) != expected)
            FuzzSupport::Fail("the result model keeps the object's shape and texts", expected.toJson(),
                              QJsonDocument(result.GetJson()).toJson());
    }
    return 0;
}
