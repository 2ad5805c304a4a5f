#pragma once

#include "core/Operator.h"
#include "sql/ovConnection.h"

namespace contract {

/// For the lifetime of the object the operator's side has its turn while a database is at work on the first row of a
/// query, and a cancel stops it there: the query raises `GivenUpByOperator`.
class CancellableReads {
public:
    CancellableReads(ovConnection& database, Progress& progress);
    ~CancellableReads();
    CancellableReads(const CancellableReads&) = delete;
    CancellableReads& operator=(const CancellableReads&) = delete;

private:
    void Await(const std::function<void()>& call);

    ovConnection& m_database;
    Progress& m_progress;
};

} // namespace contract
