#pragma once

#include "sql/ovConfig.h"
#include "sql/ovUserManager.h"

/// Record helper: what the services on records need, wired once at start-up.
struct ovRecords {
    ovConnection* Connection = nullptr;
    ovConfig* ConfigClass = nullptr;
    ovUserManager* UserManager = nullptr;
    ovErrors* Errors = nullptr;
};
