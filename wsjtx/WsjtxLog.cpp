#include "wsjtx/WsjtxLog.h"

Q_LOGGING_CATEGORY(lcWsjtx, "kestrel.wsjtx")
