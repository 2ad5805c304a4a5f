#include "adapters/contract/run/CancellableReads.h"

#include "adapters/contract/run/ImportRun.h"

#include <chrono>
#include <future>

namespace contract {

CancellableReads::CancellableReads(ovConnection& database, Progress& progress)
    : m_database(database),
      m_progress(progress) {
    m_database.Await = [this](const std::function<void()>& call) { Await(call); };
}

CancellableReads::~CancellableReads() { m_database.Await = {}; }

/// A stop that comes before the database has begun is lost: it is asked for again.
void CancellableReads::Await(const std::function<void()>& call) {
    constexpr std::chrono::milliseconds turn(50);
    constexpr int turnsBetweenStops = 20;
    std::future<void> done = std::async(std::launch::async, call);
    int turns = 0;
    while (done.wait_for(turn) != std::future_status::ready) {
        m_progress.Wait();
        if (m_progress.Cancel() && turns++ % turnsBetweenStops == 0) {
            m_database.Interrupt();
        }
    }
    try {
        done.get();
    } catch (const Error&) {
        if (turns > 0) {
            throw GivenUpByOperator();
        }
        throw;
    }
}

} // namespace contract
