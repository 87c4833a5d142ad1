#include "collector/example_upload.h"

// Every value is made up. Sections follow one another as in an upload of a machine; the pieces join without anything
// between them.
namespace zt::telemetry::collector::performancesamples {
namespace {

constexpr const char* kHead = R"json({"data":{"collectionId":"5CG0000001_2026-03-07T12:20:42",
"hwInfo":{)json";

constexpr const char* kBatteries = R"json(
"batteriesInfo":[{"batteryCTNumber":"6XXXX0A1B2C3D4","batterySerialNumber":"00123 2025/02/14","batteryStatus":["0"],
  "chargeRateMw":0,"chargeState":"discharging","cycleCount":87,"dischargeRateMw":9120,"electricCurrent":788,
  "fullChargeCapacity":51480,"fullChargeCapacityPercent":95.5,"maxErrorPercent":1,"remainingChargeCapacity":40154,
  "remainingChargeCapacityPercent":78,"voltage":12230,"voltagePercent":1.06}],)json";

constexpr const char* kProcessors = R"json(
"cpusInfo":[{"deviceId":"CPU0","temperatureSensorsInfo":[{"sensorName":"cpu_temp","temperatureCelsius":54}],
  "utilizationPercent":23}],)json";

constexpr const char* kPosture = R"json(
"deviceState":{"deviceMode":"positionClamshell"},)json";

constexpr const char* kFans = R"json(
"fansInfo":[
  {"fanId":1,"fanStatisticsInfo":[{"fanStatName":"duty_cycle","fanStatValue":31.5},
    {"fanStatName":"tach_current","fanStatValue":2410},{"fanStatName":"tach_target","fanStatValue":2400}]},
  {"fanId":2,"fanStatisticsInfo":[{"fanStatName":"duty_cycle","fanStatValue":29.25},
    {"fanStatName":"tach_current","fanStatValue":2190},{"fanStatName":"tach_target","fanStatValue":2200}]}],)json";

constexpr const char* kGraphicsCards = R"json(
"gpusInfo":[{"busId":"0","decoderUtilizationPercent":4,"encoderUtilizationPercent":0,"gpusClockMhz":1300,
  "gpusUtilizationPercent":17.25,"graphicsCardSerialNumber":"5CG0000001","memoryBandwidthGb":128,
  "memoryClockMhz":3200,"memoryControllerUtilizationPercent":12.5,"memoryUsedMb":1024,
  "performanceCappedReason":"unknown","temperatureCelsius":51,"videoEngineUtilizationPercent":4}],)json";

constexpr const char* kNetwork = R"json(
"networkInfo":{"hasInternetAccess":true,"hasNetworkAccess":true,
  "interfacesInfo":[{"adjacentChannelInterferenceCount":2,"bytesReceived":8400216,"bytesSent":912004,
  "channel":36,"coChannelInterferenceCount":5,"deviceID":"{0A1B2C3D-0000-4000-8000-000000000001}",
  "isManagedNetwork":"Managed","networkAdapterName":"Wireless","networkAdapterType":"Wi-Fi",
  "networkTrustLevel":"Private","nominalSpeed":1200,"radioType":"802.11ax","receiveRate":1080,
  "signalStrength":4294967235,"transmissionRate":960,
  "wLanProfiles":[{"isActive":true,"wLanProfileAuthentication":"WPA2PSK","wLanProfileEncryption":"AES",
    "wLanProfileName":"3F9A0C77D1E2B845"}]}],"isVPNConnected":false,
  "tcpIPV4StatsInfo":{"currentConnections":64,"errorsReceived":0,"failedConnections":11},
  "tcpIPV6StatsInfo":{"failedConnections":3}},)json";

constexpr const char* kNeuralProcessors = R"json(
"npusInfo":[{"deviceId":"PCI/VEN_0000&DEV_0001/3&0&0","memoryBandwidthGb":16,"memoryClockMhz":1866000000,
  "memoryControllerUtilizationPercent":0,"memoryUsedMb":256,"npusClockMhz":1400000000,
  "temperatureSensorsInfo":[{"sensorName":"Temp_0","temperatureCelsius":47}]}],)json";

constexpr const char* kStorageDrives = R"json(
"storageDrivesInfo":[{"driveSerialNumber":"S0EXAMPLE1","utilizationPercent":43.75}],)json";

constexpr const char* kSystemBoard = R"json(
"systemBoardInfo":{"temperatureSensorsInfo":[{"sensorName":"ext_sensor","temperatureCelsius":41},
  {"sensorName":"loc_sensor","temperatureCelsius":38}]},)json";

constexpr const char* kMemory = R"json(
"systemMemoryInfo":{"totalVirtualMemoryKb":19293184,"usedPhysicalMemoryKb":9021440,"usedVirtualMemoryKb":11010048,
  "utilizationPhysicalPercent":52.51}},)json";

constexpr const char* kSoftware = R"json(
"localTime":"2026-03-07T12:20:42.000Z","swInfo":{"name":"Performance Samples","version":"1.0.0"},)json";

constexpr const char* kSession = R"json(
"operatingSystemInfo":{"operatingSessionInfo":{"maxUserInputDelayMs":10,"timeSinceLastBootMinutes":221,
  "timeSinceLastLogonMinutes":1},
"resourceIntensiveProcessesInfo":[)json";

constexpr const char* kProcesses = R"json(
  {"basePriority":8,"executableFileId":"video conference","hasWindowTitle":true,"isElevated":false,
  "resourceUtilizationInfo":{"cpuUtilizationPercent":12,"ioReads":48211,"ioReadsKb":47,"ioWrites":20977,"ioWritesKb":20,
    "memoryUtilizationMb":612.34,"memoryUtilizationPeakMb":745,"totalCpuTimeSeconds":1893},
  "startTime":"2026-03-07T09:02:11-03:00","status":"running"},
  {"basePriority":8,"executableFileId":"browser","hasWindowTitle":true,"isElevated":false,
  "resourceUtilizationInfo":{"cpuUtilizationPercent":9,"ioReads":91554,"ioReadsKb":89,"ioWrites":88123,"ioWritesKb":86,
    "memoryUtilizationMb":1204.91,"memoryUtilizationPeakMb":1533,"totalCpuTimeSeconds":2754},
  "startTime":"2026-03-07T08:58:03-03:00","status":"running"},
  {"basePriority":8,"executableFileId":"spreadsheet","hasWindowTitle":true,"isElevated":false,
  "resourceUtilizationInfo":{"cpuUtilizationPercent":6,"ioReads":15320,"ioReadsKb":14,"ioWrites":9104,"ioWritesKb":8,
    "memoryUtilizationMb":318.02,"memoryUtilizationPeakMb":402,"totalCpuTimeSeconds":640},
  "startTime":"2026-03-07T09:15:40-03:00","status":"running"},
  {"basePriority":8,"executableFileId":"source code editor","hasWindowTitle":true,"isElevated":false,
  "resourceUtilizationInfo":{"cpuUtilizationPercent":5,"ioReads":77041,"ioReadsKb":75,"ioWrites":33870,"ioWritesKb":33,
    "memoryUtilizationMb":702.08,"memoryUtilizationPeakMb":811,"totalCpuTimeSeconds":927},
  "startTime":"2026-03-07T09:40:19-03:00","status":"running"},
  {"basePriority":8,"executableFileId":"chat","hasWindowTitle":true,"isElevated":false,
  "resourceUtilizationInfo":{"cpuUtilizationPercent":4,"ioReads":26410,"ioReadsKb":25,"ioWrites":11752,"ioWritesKb":11,
    "memoryUtilizationMb":389.77,"memoryUtilizationPeakMb":420,"totalCpuTimeSeconds":305},
  "startTime":"2026-03-07T08:59:30-03:00","status":"running"},
  {"basePriority":8,"executableFileId":"mail","hasWindowTitle":true,"isElevated":false,
  "resourceUtilizationInfo":{"cpuUtilizationPercent":3,"ioReads":64290,"ioReadsKb":62,"ioWrites":29981,"ioWritesKb":29,
    "memoryUtilizationMb":276.4,"memoryUtilizationPeakMb":310,"totalCpuTimeSeconds":451},
  "startTime":"2026-03-07T08:58:49-03:00","status":"notResponding"},
  {"basePriority":6,"executableFileId":"file synchronisation","hasWindowTitle":false,"isElevated":false,
  "resourceUtilizationInfo":{"cpuUtilizationPercent":2,"ioReads":90877,"ioReadsKb":88,"ioWrites":84016,"ioWritesKb":82,
    "memoryUtilizationMb":154.19,"memoryUtilizationPeakMb":203,"totalCpuTimeSeconds":266},
  "startTime":"2026-03-07T08:57:12-03:00","status":"running"},
  {"basePriority":4,"executableFileId":"search indexer","hasWindowTitle":false,"isElevated":true,
  "resourceUtilizationInfo":{"cpuUtilizationPercent":1,"ioReads":48202,"ioReadsKb":47,"ioWrites":95561,"ioWritesKb":93,
    "memoryUtilizationMb":98.25,"memoryUtilizationPeakMb":131,"totalCpuTimeSeconds":174},
  "startTime":"2026-03-07T08:42:08-03:00","status":"unknown"}]},)json";

constexpr const char* kTail = R"json(
"samplePointsActual":1,"version":"2.0.0-beta.3"},
"gun":"zt.telemetry.contract.upload.log.PerformanceSamples.version.2"})json";

}  // namespace

const std::string example_upload_ = std::string(kHead) + kBatteries + kProcessors + kPosture + kFans + kGraphicsCards +
                                    kNetwork + kNeuralProcessors + kStorageDrives + kSystemBoard + kMemory + kSoftware +
                                    kSession + kProcesses + kTail;

}  // namespace zt::telemetry::collector::performancesamples
