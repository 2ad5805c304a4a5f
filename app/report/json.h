#pragma once

#include "app/report/Proof.h"

#include <QJsonObject>

namespace proof {

/// The whole proof for a program to read: numbers as numbers, amounts as texts with six decimals, "verdict" "green",
/// "yellow" or "red".
QJsonObject Json(const Proof& proof);
/// SHA-256 of what was found, in hexadecimal digits: the same for two pages that found the same, whenever they were
/// made and by whom.
QString Digest(const Proof& proof);

} // namespace proof
