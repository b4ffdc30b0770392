// What the collectors found out, in the form that the asset summary takes.
#pragma once

#include "collectors/network_identity.h"
#include "collectors/system_summary.h"
#include "zxml/asset_info.h"

// The results borrow the texts of their arguments.
AssetNetwork asset_network(const NetworkIdentity& identity);
AssetSummary asset_summary(const SystemSummary& summary);
