#pragma once

#include "docs/manual/manualPages.h"

namespace manual {

/// What is wrong with a page of settings beside the defaults: keys that nobody reads, keys under another section than
/// the one that they are read from.
QStringList FaultsOfSettings(const QString& page, const SettingUses& settings);
/// What is wrong with a page of annotations beside who writes them: kinds that nobody writes, and kinds that a log has
/// and the page lacks. @param logged kinds that stand in logs
QStringList FaultsOfAnnotations(const QString& page, const Annotations& annotations, const Annotations& logged);
/// Cells of tables that are empty, links and pictures that lead nowhere, pages that none links to. @param folder docs
QStringList FaultsOfPages(const QDir& folder);
/// All of these for the project below a folder, each line naming its page.
QStringList Faults(const QDir& root);

} // namespace manual
