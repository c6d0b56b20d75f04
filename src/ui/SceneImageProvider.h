#pragma once

#include <QList>
#include <QQmlEngine>
#include <QString>

#include <functional>

// An image provider that a QML scene is built with, made anew for each engine (an engine owns and
// deletes its providers).
struct SceneImageProvider
{
    QString id;
    std::function<QQmlImageProviderBase *()> make;
};

inline void installImageProviders(QQmlEngine &engine, const QList<SceneImageProvider> &providers)
{
    for (const SceneImageProvider &provider : providers)
        engine.addImageProvider(provider.id, provider.make());
}
