// What the collectors found out, as the asset summary takes it.
#pragma once

#include "collectors/network_identity.h"
#include "collectors/system_summary.h"
#include "zxml/asset_info.h"

// The results borrow the texts of their arguments.
AssetNetwork asset_network(const NetworkIdentity& identity);
AssetSummary asset_summary(const SystemSummary& summary);
