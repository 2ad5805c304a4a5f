#pragma once

// Qt headers that nearly every file reads, compiled once.
#include <QDateTime>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <functional>
#include <memory>
#include <optional>
