// Made-up hand-overs of one machine, as `collect --format json` prints them: the same ones every time.

const HOUR = 3600;
const UPLOAD = 'zt.telemetry.contract.upload.log.PcLogPerformanceSamplesAsCDM';
const STORED = 'zt.telemetry.contract.storage.device_performance.AmdPmfSamples';
export const FIRST = Date.UTC(2026, 1, 1) / 1000;
export const SERIAL = '5CG0000001';
export const INTERFACE = '{11111111-0000-4000-8000-000000000001}';

/** What a text can hold at its worst. */
export const HOSTILE = [
  '</script><img src=x onerror="window.attacked=1">',
  '<svg onload=window.attacked=1>"\'`',
  '\u2028\u2029 line ends',
  '\u202Eright to left\u202C \u2067isolated',
  'W'.repeat(64 * 1024),
  '=HYPERLINK("x")',
  '{{data}} $& $1',
];

/** @param {number} time */
function text(time) {
  return new Date(time * 1000).toISOString().slice(0, 19);
}

function handOver(kind, type, record) {
  return JSON.stringify({handover: kind, type, record});
}

function upload(id, time, samples, record) {
  return handOver('send', UPLOAD, {collectionId: id.slice(0, 30), localTime: `${text(time)}.000Z`, samplePointsActual: samples, ...record});
}

/** @param {number} hour */
function load(hour) {
  const ofDay = hour % 24;
  return ofDay >= 8 && ofDay < 18 ? 0.4 + 0.4 * Math.sin((ofDay - 8) / 10 * Math.PI) : 0.03;
}

/**
 * The live record of an hour.
 * @param {number} hour
 * @param {{names?: string[], batteries?: boolean}} options
 */
export function live(hour, {names = ['video-call', 'compiler', 'browser', 'editor', 'updater', 'indexer', 'mail', 'backup', 'sync', 'shell'], batteries = true} = {}) {
  const time = FIRST + hour * HOUR + 120;
  const busy = load(hour);
  const full = Math.round(50000 * Math.max(0.5, 0.86 - hour * 0.0001));
  const hwInfo = {
    gpusInfo: [{gpusUtilizationPercent: Math.round(60 * busy), gpusClockMhz: 300 + Math.round(1500 * busy), memoryClockMhz: 405,
                memoryUsedMb: 800 + Math.round(3000 * busy), temperatureCelsius: 40 + Math.round(30 * busy), busId: '1',
                graphicsCardSerialNumber: 'GPU-0001', performanceCappedReason: busy > 0.7 ? 'thermal' : 'idle'}],
    storageDrivesInfo: [{utilizationPercent: 70 + hour * 0.03, driveSerialNumber: '0025_38A1'}],
    systemMemoryInfo: {totalVirtualMemoryKb: 24000000, usedPhysicalMemoryKb: Math.round(4e6 + 8e6 * busy),
                       usedVirtualMemoryKb: Math.round(6e6 + 9e6 * busy), utilizationPhysicalPercent: 25 + 50 * busy},
    deviceState: {deviceMode: 'positionClamshell'},
  };
  if (batteries) {
    hwInfo.batteriesInfo = [{chargeRateMw: busy < 0.1 ? 20000 : 0, cycleCount: 300 + Math.floor(hour / 24), dischargeRateMw: busy < 0.1 ? 0 : 12000,
                             fullChargeCapacity: full, remainingChargeCapacity: Math.round(full * (1 - busy / 2)),
                             fullChargeCapacityPercent: Math.round(full / 500) , remainingChargeCapacityPercent: 100 - 50 * busy,
                             batterySerialNumber: '00042', chargeState: busy < 0.1 ? 'charging' : 'discharging'}];
  }
  const processes = names.map((name, i) => ({
    hasWindowTitle: i < 3, isElevated: name === 'updater', executableFileId: name, status: 'running', basePriority: 8,
    startTime: '2026-02-01T08:00:00+00:00',
    resourceUtilizationInfo: {ioReads: 1000 * i + hour, ioReadsKb: i, ioWrites: 500 * i + hour, ioWritesKb: i, cpuUtilizationPercent: Math.round(40 * busy / (i + 1)),
                              memoryUtilizationMb: 100 + 40 * i, memoryUtilizationPeakMb: 500, totalCpuTimeSeconds: hour * 10},
  }));
  return upload(`${SERIAL}_${text(time)}`, time, undefined, {
    hwInfo,
    operatingSystemInfo: {
      operatingSessionInfo: {maxUserInputDelayMs: 10, timeSinceLastBootMinutes: hour * 60 + 30, timeSinceLastLogonMinutes: busy < 0.1 ? (hour % 24) * 60 : 0},
      resourceIntensiveProcessesInfo: processes,
    },
  });
}

/** The hourly thermal record of an hour. */
export function thermal(hour, {hot = (at) => at % 24 === 14} = {}) {
  const busy = load(hour);
  const name = (sensorName, temperatureCelsius) => ({sensorName, temperatureCelsius});
  const fan = (fanId, share) => ({fanId, fanStatisticsInfo: [
    {fanStatName: 'duty_cycle', fanStatValue: hot(hour) ? 99 : 20 + 60 * busy * share},
    {fanStatName: 'tach_current', fanStatValue: 1500 + Math.round(3000 * busy * share)},
    {fanStatName: 'tach_target', fanStatValue: 1520 + Math.round(3000 * busy * share)}]});
  return upload(`${text(FIRST + hour * HOUR).slice(0, 13)}H_${SERIAL}-TH`, FIRST + (hour + 1) * HOUR, 60, {hwInfo: {
    cpusInfo: [{utilizationPercent: Math.round(100 * busy), temperatureSensorsInfo: [name('cpu_temp', hot(hour) ? 93 : 45 + Math.round(35 * busy))], deviceId: 'CPU0'}],
    fansInfo: [fan(1, 1), fan(2, 0.7)],
    systemBoardInfo: {temperatureSensorsInfo: [name('ext_sensor', 25), name('loc_sensor', 30 + Math.round(10 * busy))]},
  }});
}

/** The hourly network record of an hour. */
export function network(hour, {profile = 'ABCDEF0123456789', deviceId = INTERFACE} = {}) {
  const busy = load(hour);
  return upload(`${text(FIRST + hour * HOUR).slice(0, 13)}H_${SERIAL}-NE`, FIRST + (hour + 1) * HOUR, 60, {hwInfo: {networkInfo: {
    hasInternetAccess: hour % 50 !== 10, hasNetworkAccess: true, isVPNConnected: busy > 0.1,
    tcpIPV4StatsInfo: {currentConnections: 20 + Math.round(80 * busy), failedConnections: hour % 7, errorsReceived: hour % 3},
    tcpIPV6StatsInfo: {failedConnections: hour % 2},
    interfacesInfo: [{
      adjacentChannelInterferenceCount: 60 * (hour % 24 === 12 ? 9 : 3), channel: busy > 0.1 ? 36 : 149, coChannelInterferenceCount: 60,
      signalStrength: 4294967296 + (hour % 24 === 12 ? -80 : -58), bytesReceived: 1e6 + 5e8 * busy, bytesSent: 1e5 + 5e7 * busy,
      nominalSpeed: 866, receiveRate: 400, transmissionRate: 300, deviceID: deviceId,
      networkTrustLevel: busy > 0.1 ? 'Domain Authenticated' : 'Private', isManagedNetwork: busy > 0.1 ? 'Managed' : 'Unmanaged', radioType: '802.11ax',
      wLanProfiles: [{wLanProfileName: profile, wLanProfileAuthentication: 'WPA3SAE', wLanProfileEncryption: 'AES'}],
    }],
  }}});
}

/** What the plugin stores beside a live record. */
export function stored(hour) {
  return handOver('store', STORED, {localTime: `${text(FIRST + hour * HOUR + 120)}+00:00`, batteryFurtherCapacityMwh: '50000',
                                    batteryFullChargeCapacityMwh: '43000', batteryChargeRateMw: '0', batteryRemainingCapacityPercent: '80',
                                    deviceMode: 'positionClamshell', memoryClockMhz: 4800});
}

/**
 * All hand-overs of so many hours, but for those that `missing` says.
 * @param {number} hours
 * @param {(hour: number) => boolean} missing
 */
export function handOvers(hours, missing = () => false) {
  const lines = [];
  for (let hour = 0; hour < hours; ++hour) {
    if (!missing(hour)) lines.push(thermal(hour), network(hour), stored(hour), live(hour));
  }
  return lines;
}

/** Hand-overs whose texts are hostile. */
export function hostileHandOvers() {
  const lines = handOvers(48);
  HOSTILE.forEach((value, i) => {
    lines.push(live(48 + i, {names: [value, 'harmless']}), network(48 + i, {deviceId: value, profile: value}), thermal(48 + i));
  });
  return lines;
}
