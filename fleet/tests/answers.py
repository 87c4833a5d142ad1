"""The answers to fleet/queries, worked out from hand-over lines alone: no line of SQL has a part in them."""

import collections
import datetime
import json
import math


class Fleet:
    """The records of hand-over lines, each once, with what identifies them."""

    def __init__(self, lines, begin: datetime.datetime, end: datetime.datetime):
        self.begin, self.end = begin, end
        seen = {}
        for line in lines:
            hand_over = json.loads(line)
            record = hand_over["record"]
            identity = record["collectionId"]
            seen[identity] = (hand_over["contract_version"], record)
        self.records = [Record(identity, version, record) for identity, (version, record) in seen.items()]
        self.within = [r for r in self.records if begin <= r.time < end]

    def live(self):
        return [record for record in self.within if record.kind == "live"]

    def of(self, kind):
        return [record for record in self.within if record.kind == kind]


class Record:
    def __init__(self, identity, version, record):
        self.version = version
        self.hardware = record.get("hwInfo", {})
        self.system = record.get("operatingSystemInfo", {})
        if identity[13:15] == "H_":
            self.kind = "network" if "networkInfo" in self.hardware else "thermal"
            self.machine = identity[15:-3]
            self.time = datetime.datetime.fromisoformat(identity[:13] + ":00:00")
        else:
            self.kind = "live"
            self.machine = identity.split("_")[0]
            self.time = datetime.datetime.fromisoformat(record["localTime"][:19])

    def list(self, name):
        return self.hardware.get(name, [])


def mean(values):
    values = list(values)
    return sum(values) / len(values) if values else None


def quantile(level, values):
    values = sorted(values)
    return values[min(int(level * len(values)), len(values) - 1)]


def grouped(items, key):
    groups = collections.defaultdict(list)
    for item in items:
        groups[key(item)].append(item)
    return groups


def newest(items):
    return max(items, key=lambda item: item[0])


def celsius(record):
    return record.list("cpusInfo")[0]["temperatureSensorsInfo"][0]["temperatureCelsius"]


def batteries(fleet):
    """Of each machine the newest entry of its first battery."""
    found = grouped([(r.machine, r.time, r.list("batteriesInfo")[0]) for r in fleet.live() if r.list("batteriesInfo")],
                    lambda item: item[0])
    return {machine: newest([(time, entry) for _, time, entry in items])[1] for machine, items in found.items()}


def battery_health_by_model_year(fleet):
    rows = []
    for digit, group in sorted(grouped(batteries(fleet).items(), lambda item: item[0][3]).items()):
        healths = [entry["fullChargeCapacityPercent"] for _, entry in group]
        rows.append({"year_digit": digit, "machines": len(group), "mean_health": mean(healths),
                     "worst_tenth": quantile(0.1, healths), "mean_cycles": mean(e["cycleCount"] for _, e in group),
                     "share_worn": sum(health < 80 for health in healths) / len(group)})
    return rows


def hottest_percent(fleet):
    groups = grouped(fleet.of("thermal"), lambda r: r.machine)
    rows = [{"machine": machine, "high": quantile(0.9, map(celsius, group)), "hours": len(group)}
            for machine, group in groups.items()]
    rows.sort(key=lambda row: (-row["high"], row["machine"]))
    return rows[: math.ceil(len(rows) / 100)]


def throttling_reasons(fleet):
    cards = [(r.machine, card) for r in fleet.live() for card in r.list("gpusInfo")
             if card.get("performanceCappedReason", "unknown") != "unknown"]
    rows = [{"reason": reason, "readings": len(group), "machines": len({machine for machine, _ in group}),
             "mean_celsius": mean(card["temperatureCelsius"] for _, card in group),
             "mean_load": mean(card["gpusUtilizationPercent"] for _, card in group)}
            for reason, group in grouped(cards, lambda item: item[1]["performanceCappedReason"]).items()]
    return sorted(rows, key=lambda row: (-row["readings"], row["reason"]))


def interfaces(fleet):
    return [(r.machine, entry) for r in fleet.of("network") for entry in r.hardware["networkInfo"]["interfacesInfo"]]


def signed(bits):
    return bits - 2**32 if bits >= 2**31 else bits


def wifi_channels_that_suffer(fleet):
    radios = [item for item in interfaces(fleet) if item[1]["channel"] > 0]
    rows = []
    for (channel, radio), group in grouped(radios, lambda item: (item[1]["channel"], item[1]["radioType"])).items():
        entries = [entry for _, entry in group]
        rows.append({"channel": channel, "radio_type": radio, "hours": len(group),
                     "machines": len({machine for machine, _ in group}),
                     "on_channel": mean(e["coChannelInterferenceCount"] for e in entries),
                     "beside_channel": mean(e["adjacentChannelInterferenceCount"] for e in entries),
                     "mean_dbm": mean(signed(e["signalStrength"]) for e in entries),
                     "share_of_speed": mean(e["receiveRate"] / e["nominalSpeed"] for e in entries)})
    return sorted(rows, key=lambda row: (-(row["on_channel"] + row["beside_channel"]), row["channel"], row["radio_type"]))


def slope(points):
    x_mean, y_mean = mean(x for x, _ in points), mean(y for _, y in points)
    spread = sum((x - x_mean) ** 2 for x, _ in points)
    return sum((x - x_mean) * (y - y_mean) for x, y in points) / spread


def drives_full_within_30_days(fleet):
    drives = [(r.machine, entry["driveSerialNumber"], r.time, entry["utilizationPercent"])
              for r in fleet.live() for entry in r.list("storageDrivesInfo")]
    rows = []
    for (machine, drive), group in grouped(drives, lambda item: item[:2]).items():
        if len(group) < 12:
            continue
        points = [((time - fleet.begin).total_seconds() / 86400, used) for _, _, time, used in group]
        now, growth = max(points)[1], slope(points)
        if growth > 0.01 and (100 - now) / growth <= 30:
            rows.append({"machine": machine, "drive": drive, "used_now": now, "percent_a_day": growth,
                         "days_left": (100 - now) / growth})
    return sorted(rows, key=lambda row: (row["days_left"], row["machine"], row["drive"]))


def missing_sections_by_version(fleet):
    def share(group, section):
        return sum(not r.hardware.get(section) for r in group) / len(group)

    return [{"contract_version": version, "records": len(group), "without_battery": share(group, "batteriesInfo"),
             "without_memory": share(group, "systemMemoryInfo"), "without_npu": share(group, "npusInfo")}
            for version, group in sorted(grouped(fleet.live(), lambda r: r.version).items())]


def hourly(fleet):
    return fleet.of("thermal") + fleet.of("network")


def machines_gone_silent(fleet):
    limit = fleet.end - datetime.timedelta(hours=12)
    rows = [{"machine": machine, "last_hour": str(max(r.time for r in group)), "records": len(group)}
            for machine, group in grouped(hourly(fleet), lambda r: r.machine).items()
            if max(r.time for r in group) < limit]
    return sorted(rows, key=lambda row: (row["last_hour"], row["machine"]))


def busiest_processes(fleet):
    entries = [(r.machine, entry) for r in fleet.live()
               for entry in r.system.get("resourceIntensiveProcessesInfo", [])]
    rows = []
    for (name, elevated), group in grouped(
            entries, lambda item: (item[1]["executableFileId"], item[1]["isElevated"])).items():
        uses = [entry["resourceUtilizationInfo"] for _, entry in group]
        rows.append({"process": name, "elevated": elevated, "readings": len(group),
                     "machines": len({machine for machine, _ in group}),
                     "mean_percent": mean(use["cpuUtilizationPercent"] for use in uses),
                     "most_percent": max(use["cpuUtilizationPercent"] for use in uses),
                     "mean_mebibytes": mean(use["memoryUtilizationMb"] for use in uses)})
    return sorted(rows, key=lambda row: (-row["mean_percent"], row["process"], row["elevated"]))


def memory_pressure(fleet):
    found = [(r.machine, r.hardware["systemMemoryInfo"]["utilizationPhysicalPercent"]) for r in fleet.live()
             if "systemMemoryInfo" in r.hardware]
    means = [mean(percent for _, percent in group) for group in grouped(found, lambda item: item[0]).values()]
    return [{"from_percent": tens * 10, "machines": len(group), "mean": mean(group)}
            for tens, group in sorted(grouped(means, lambda value: int(value) // 10).items())]


def wrong_clocks(fleet):
    rows = []
    for machine, group in sorted(grouped([r for r in fleet.records if r.kind != "live"], lambda r: r.machine).items()):
        times = [r.time for r in group]
        if max(times) < fleet.begin or min(times) >= fleet.end:
            rows.append({"machine": machine, "records": len(group), "first_hour": str(min(times)),
                         "last_hour": str(max(times)),
                         "hours_off": int((min(times) - fleet.begin).total_seconds() // 3600)})
    return rows


def hours_that_arrived(fleet):
    hours = (fleet.end - fleet.begin).total_seconds() / 3600
    rows = []
    for kind in ("thermal", "network"):
        group = fleet.of(kind)
        machines = len({r.machine for r in group})
        rows.append({"kind": kind, "machines": machines, "records": len(group),
                     "share_of_hours": len(group) / machines / hours})
    return rows


def contract_versions(fleet):
    groups = grouped(fleet.records, lambda r: r.machine).values()
    counts = collections.Counter(max(group, key=lambda r: r.time).version for group in groups)
    return [{"contract_version": version, "machines": count} for version, count in sorted(counts.items())]


def turns(record):
    return any(figure["fanStatName"] == "tach_current" and figure["fanStatValue"] > 0
               for fan in record.list("fansInfo") for figure in fan["fanStatisticsInfo"])


def hot_with_resting_fans(fleet):
    hot = [r for r in fleet.of("thermal") if celsius(r) >= 60 and not turns(r)]
    rows = [{"machine": machine, "hours": len(group), "hottest": max(map(celsius, group))}
            for machine, group in grouped(hot, lambda r: r.machine).items()]
    return sorted(rows, key=lambda row: (-row["hours"], row["machine"]))


def fan_speed_by_temperature(fleet):
    found = [(celsius(r) // 5 * 5, fan["fanId"], figure["fanStatValue"]) for r in fleet.of("thermal")
             for fan in r.list("fansInfo") for figure in fan["fanStatisticsInfo"]
             if figure["fanStatName"] == "tach_current"]
    return [{"from_celsius": degrees, "fan": fan, "hours": len(group), "mean_speed": mean(item[2] for item in group)}
            for (degrees, fan), group in sorted(grouped(found, lambda item: item[:2]).items())]


def networks(fleet):
    return [(r, r.hardware["networkInfo"]) for r in fleet.of("network")]


def hours_without_internet(fleet):
    rows = []
    for machine, group in grouped(networks(fleet), lambda item: item[0].machine).items():
        lost = sum(not network["hasInternetAccess"] for _, network in group)
        if lost:
            rows.append({"machine": machine, "hours_without_internet": lost,
                         "hours_without_network": sum(not network["hasNetworkAccess"] for _, network in group),
                         "hours": len(group)})
    rows.sort(key=lambda row: (-row["hours_without_internet"], -row["hours_without_network"], row["machine"]))
    return rows[:100]


def vpn_by_hour(fleet):
    return [{"hour": hour, "hours": len(group),
             "share_with_vpn": sum(network["isVPNConnected"] for _, network in group) / len(group)}
            for hour, group in sorted(grouped(networks(fleet), lambda item: item[0].time.hour).items())]


def failed_connections(fleet):
    rows = []
    for machine, group in grouped(networks(fleet), lambda item: item[0].machine).items():
        v4 = sum(network["tcpIPV4StatsInfo"]["failedConnections"] for _, network in group)
        v6 = sum(network["tcpIPV6StatsInfo"]["failedConnections"] for _, network in group)
        rows.append({"machine": machine, "failed_ipv4": v4, "failed_ipv6": v6,
                     "failed_an_hour": (v4 + v6) / len(group)})
    return sorted(rows, key=lambda row: (-row["failed_an_hour"], row["machine"]))[:100]


def batteries_to_replace(fleet):
    rows = [{"machine": machine, "tracking_number": entry["batteryCTNumber"],
             "health": entry["fullChargeCapacityPercent"], "cycles": entry["cycleCount"]}
            for machine, entry in batteries(fleet).items()
            if entry["fullChargeCapacityPercent"] < 75 or entry["cycleCount"] > 800]
    return sorted(rows, key=lambda row: (row["health"], row["machine"]))


def npus_at_work(fleet):
    found = [(r.machine, npu["memoryUsedMb"]) for r in fleet.live() for npu in r.list("npusInfo")]
    return [{"readings": len(found), "machines": len({machine for machine, _ in found}),
             "mean_mebibytes": mean(used for _, used in found if used >= 0),
             "wrapped": sum(used < 0 for _, used in found)}]


def running_without_restart(fleet):
    sessions = grouped([(r.machine, r.time, r.system["operatingSessionInfo"]) for r in fleet.live()],
                       lambda item: item[0])
    rows = []
    for machine, group in sessions.items():
        days = newest([(time, session["timeSinceLastBootMinutes"]) for _, time, session in group])[1] / 1440
        if days >= 5:
            rows.append({"machine": machine, "days_running": days})
    return sorted(rows, key=lambda row: (-row["days_running"], row["machine"]))
