#pragma once

// What nearly every test reads, compiled once for each program.
#include "cmake/pch.h"
#include "sql/ovConnection.h"
#include "tests/support/QuadrixTest.h"
#include "tests/support/TestTarget.h"

#include <QTemporaryDir>
