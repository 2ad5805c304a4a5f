#pragma once

#include "app/report/Proof.h"

namespace proof {

/// Writes the page in place of one that may be there, which stays when that fails: `ImportError` names the path then.
/// No link is followed.
void WritePage(const QString& path, const Proof& proof);
/// Writes the page into a folder, which is made when missing, under a name that tells company, origin and moment:
/// "Quadratura X01 Gescom 2024-03-05 102031.html". Returns its path. Raises `ImportError`.
QString KeepPage(const QString& folder, const Proof& proof);

} // namespace proof
