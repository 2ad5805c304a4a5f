#pragma once

#include <QtGlobal>

#include <functional>
#include <vector>

namespace qdxProduction {

/// A bill and one that it contains, by RECORD_ID.
struct BillLink {
    qint64 bill;
    qint64 part;
};

/// Finds the bills that contain themselves, over any number of levels, and hands on paths from such a bill back to it,
/// the bill at both ends. Every bill that contains itself is in at least one path and no path comes twice: a bill that
/// an earlier path has shown gets none of its own. A path is as short as there is one, and begins with the lowest
/// RECORD_ID of those not shown yet.
void ForEachCycle(std::vector<BillLink> links, const std::function<void(const std::vector<qint64>& path)>& found);

} // namespace qdxProduction
