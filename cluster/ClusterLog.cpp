#include "cluster/ClusterLog.h"

Q_LOGGING_CATEGORY(lcCluster, "kestrel.cluster")
