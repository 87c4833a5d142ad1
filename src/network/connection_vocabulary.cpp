#include "network/connection_vocabulary.h"

namespace zt::telemetry::collector::performancesamples {

const Vocabulary kConnectionStatusTexts = {
    {0, "Disconnected"},
    {1, "Connecting"},
    {2, "Connected"},
    {3, "Disconnecting"},
    {4, "Hardware Not Present"},
    {5, "Hardware Disabled"},
    {6, "Hardware Malfunction"},
    {7, "Media Disconnected"},
    {8, "Authenticating"},
    {9, "Authentication Succeeded"},
    {10, "Authentication Failed"},
    {11, "Invalid Address"},
    {12, "Credentials Required"},
};

const Vocabulary kNetworkCategoryTexts = {
    {0, "Public"},
    {1, "Private"},
    {2, "Domain Authenticated"},
};

}  // namespace zt::telemetry::collector::performancesamples
