#pragma once

#include "adapters/registry.h"

inline const contract::Origin& Gescom() { return *registry::Find("Gescom"); }
