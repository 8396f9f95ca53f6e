#include "metrics/MetricsJson.h"

#include <stdexcept>

#include "json/ParseBounded.h"
#include "metrics/IsoTime.h"
#include "settings/RawEnum.h"

namespace trotlet::metrics {

namespace {

// Decoding throws this internally; `decode` turns it into a message.
struct DecodeError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

template <typename T>
void putOptional(Json& j, const char* key, const std::optional<T>& value) {
    if (value) j[key] = *value;
}

template <typename E, size_t N>
std::string raw(E value, const std::array<std::string_view, N>& names) {
    return std::string(settings::rawName(value, names));
}

// Reading side. Each helper names the key in its failure.
const Json& field(const Json& j, const char* key) {
    if (!j.is_object()) throw DecodeError("expected an object");
    auto it = j.find(key);
    if (it == j.end()) throw DecodeError(std::string("missing \"") + key + "\"");
    return *it;
}

bool hasValue(const Json& j, const char* key) {
    auto it = j.find(key);
    return it != j.end() && !it->is_null();
}

double getDouble(const Json& v, const char* key) {
    if (!v.is_number()) throw DecodeError(std::string("\"") + key + "\" is not a number");
    return v.get<double>();
}

std::int64_t getInt(const Json& v, const char* key) {
    if (!v.is_number_integer()) throw DecodeError(std::string("\"") + key + "\" is not an integer");
    if (v.is_number_unsigned() && v.get<std::uint64_t>() > std::uint64_t(INT64_MAX))
        throw DecodeError(std::string("\"") + key + "\" is out of range");
    return v.get<std::int64_t>();
}

std::uint64_t getU64(const Json& v, const char* key) {
    if (v.is_number_unsigned()) return v.get<std::uint64_t>();
    if (v.is_number_integer() && v.get<std::int64_t>() >= 0)
        return static_cast<std::uint64_t>(v.get<std::int64_t>());
    throw DecodeError(std::string("\"") + key + "\" is not a non-negative integer");
}

bool getBool(const Json& v, const char* key) {
    if (!v.is_boolean()) throw DecodeError(std::string("\"") + key + "\" is not a boolean");
    return v.get<bool>();
}

std::string getString(const Json& v, const char* key) {
    if (!v.is_string()) throw DecodeError(std::string("\"") + key + "\" is not a string");
    return v.get<std::string>();
}

Timestamp getTime(const Json& v, const char* key) {
    if (auto t = v.is_string() ? parseIso8601(v.get<std::string>()) : std::nullopt) return *t;
    throw DecodeError(std::string("\"") + key + "\" is not an ISO 8601 time");
}

template <typename E, size_t N>
E getEnum(const Json& v, const char* key, const std::array<std::string_view, N>& names) {
    if (v.is_string())
        if (auto e = settings::fromRawName<E>(v.get<std::string>(), names)) return *e;
    throw DecodeError(std::string("\"") + key +
                      "\" is not one of: " + settings::joinedNames(names));
}

std::int32_t getInt32(const Json& v, const char* key) {
    const auto i = getInt(v, key);
    if (i < INT32_MIN || i > INT32_MAX)
        throw DecodeError(std::string("\"") + key + "\" is out of range");
    return static_cast<std::int32_t>(i);
}

template <typename F>
auto optionalOf(const Json& j, const char* key, F get) -> std::optional<decltype(get(j, key))> {
    if (!hasValue(j, key)) return std::nullopt;
    return get(j.at(key), key);
}

template <typename T, typename F>
std::vector<T> listOf(const Json& v, const char* key, F get) {
    if (!v.is_array()) throw DecodeError(std::string("\"") + key + "\" is not a list");
    std::vector<T> out;
    out.reserve(v.size());
    for (const auto& item : v) out.push_back(get(item, key));
    return out;
}

template <typename T>
T decodeOrThrow(const Json& j);

template <typename T>
T nested(const Json& v, const char* key) {
    try {
        return decodeOrThrow<T>(v);
    } catch (const DecodeError& e) {
        throw DecodeError(std::string(key) + ": " + e.what());
    }
}

template <>
CPUMetrics decodeOrThrow<CPUMetrics>(const Json& j) {
    CPUMetrics c;
    c.total = getDouble(field(j, "total"), "total");
    c.user = getDouble(field(j, "user"), "user");
    c.system = getDouble(field(j, "system"), "system");
    c.perCore = listOf<double>(field(j, "perCore"), "perCore", getDouble);
    c.loadAvg = listOf<double>(field(j, "loadAvg"), "loadAvg", getDouble);
    c.processCount = optionalOf(j, "processCount", getInt);
    c.threadCount = optionalOf(j, "threadCount", getInt);
    return c;
}

template <>
MemoryMetrics decodeOrThrow<MemoryMetrics>(const Json& j) {
    MemoryMetrics m;
    m.total = getU64(field(j, "total"), "total");
    m.used = getU64(field(j, "used"), "used");
    m.app = getU64(field(j, "app"), "app");
    m.wired = getU64(field(j, "wired"), "wired");
    m.compressed = getU64(field(j, "compressed"), "compressed");
    m.cached = getU64(field(j, "cached"), "cached");
    m.free = getU64(field(j, "free"), "free");
    m.swapUsed = getU64(field(j, "swapUsed"), "swapUsed");
    m.swapTotal = getU64(field(j, "swapTotal"), "swapTotal");
    m.pressure = getEnum<MemoryPressure>(field(j, "pressure"), "pressure", MemoryPressureNames);
    m.freePercent = optionalOf(j, "freePercent", getInt);
    return m;
}

template <>
VolumeInfo decodeOrThrow<VolumeInfo>(const Json& j) {
    VolumeInfo v;
    v.name = getString(field(j, "name"), "name");
    v.path = getString(field(j, "path"), "path");
    v.totalBytes = optionalOf(j, "totalBytes", getInt);
    v.availableBytes = optionalOf(j, "availableBytes", getInt);
    v.isInternal = getBool(field(j, "isInternal"), "isInternal");
    v.isRemovable = getBool(field(j, "isRemovable"), "isRemovable");
    v.isRoot = getBool(field(j, "isRoot"), "isRoot");
    v.isReadOnly = getBool(field(j, "isReadOnly"), "isReadOnly");
    return v;
}

template <>
DiskMetrics decodeOrThrow<DiskMetrics>(const Json& j) {
    DiskMetrics d;
    d.volumes = listOf<VolumeInfo>(field(j, "volumes"), "volumes", nested<VolumeInfo>);
    d.readBps = optionalOf(j, "readBps", getDouble);
    d.writeBps = optionalOf(j, "writeBps", getDouble);
    d.totalReadBytes = optionalOf(j, "totalReadBytes", getU64);
    d.totalWrittenBytes = optionalOf(j, "totalWrittenBytes", getU64);
    return d;
}

template <>
WifiDetails decodeOrThrow<WifiDetails>(const Json& j) {
    if (!j.is_object()) throw DecodeError("expected an object");
    WifiDetails w;
    w.ssid = optionalOf(j, "ssid", getString);
    w.rssiDbm = optionalOf(j, "rssiDbm", getInt);
    w.noiseDbm = optionalOf(j, "noiseDbm", getInt);
    w.qualityPercent = optionalOf(j, "qualityPercent", getInt);
    w.frequencyMHz = optionalOf(j, "frequencyMHz", getDouble);
    return w;
}

template <>
NetworkMetrics decodeOrThrow<NetworkMetrics>(const Json& j) {
    NetworkMetrics n;
    n.downBps = getDouble(field(j, "downBps"), "downBps");
    n.upBps = getDouble(field(j, "upBps"), "upBps");
    n.totalDownBytes = optionalOf(j, "totalDownBytes", getU64);
    n.totalUpBytes = optionalOf(j, "totalUpBytes", getU64);
    n.interface = optionalOf(j, "interface", getString);
    n.interfaceKind = optionalOf(j, "interfaceKind", [](const Json& v, const char* k) {
        return getEnum<InterfaceKind>(v, k, InterfaceKindNames);
    });
    n.localIP = optionalOf(j, "localIP", getString);
    n.router = optionalOf(j, "router", getString);
    n.online = getBool(field(j, "online"), "online");
    n.wifi = optionalOf(j, "wifi", nested<WifiDetails>);
    n.vpnInterface = optionalOf(j, "vpnInterface", getString);
    return n;
}

template <>
BatteryMetrics decodeOrThrow<BatteryMetrics>(const Json& j) {
    if (!j.is_object()) throw DecodeError("expected an object");
    BatteryMetrics b;
    b.present = hasValue(j, "percent");
    if (b.present) {
        b.percent = getInt(field(j, "percent"), "percent");
        b.charging = getBool(field(j, "charging"), "charging");
        b.pluggedIn = getBool(field(j, "pluggedIn"), "pluggedIn");
        b.fullyCharged = getBool(field(j, "fullyCharged"), "fullyCharged");
    }
    b.timeRemainingMin = optionalOf(j, "timeRemainingMin", getInt);
    b.healthPct = optionalOf(j, "healthPct", getDouble);
    b.cycles = optionalOf(j, "cycles", getInt);
    b.condition = optionalOf(j, "condition", getString);
    b.temperatureC = optionalOf(j, "temperatureC", getDouble);
    b.watts = optionalOf(j, "watts", getDouble);
    b.systemWatts = optionalOf(j, "systemWatts", getDouble);
    b.adapterWatts = optionalOf(j, "adapterWatts", getInt);
    b.adapterName = optionalOf(j, "adapterName", getString);
    b.lowPowerMode = hasValue(j, "lowPowerMode") && getBool(j.at("lowPowerMode"), "lowPowerMode");
    return b;
}

template <>
TemperatureSensor decodeOrThrow<TemperatureSensor>(const Json& j) {
    TemperatureSensor s;
    s.name = getString(field(j, "name"), "name");
    s.group = getEnum<SensorGroup>(field(j, "group"), "group", SensorGroupNames);
    s.celsius = getDouble(field(j, "celsius"), "celsius");
    return s;
}

template <>
FanReading decodeOrThrow<FanReading>(const Json& j) {
    FanReading f;
    f.index = getInt(field(j, "index"), "index");
    f.rpm = getDouble(field(j, "rpm"), "rpm");
    f.minRpm = optionalOf(j, "minRpm", getDouble);
    f.maxRpm = optionalOf(j, "maxRpm", getDouble);
    return f;
}

template <>
ThermalMetrics decodeOrThrow<ThermalMetrics>(const Json& j) {
    ThermalMetrics t;
    t.state = getEnum<ThermalState>(field(j, "state"), "state", ThermalStateNames);
    t.cpuC = optionalOf(j, "cpuC", getDouble);
    t.cpuMaxC = optionalOf(j, "cpuMaxC", getDouble);
    t.gpuC = optionalOf(j, "gpuC", getDouble);
    t.socC = optionalOf(j, "socC", getDouble);
    t.sensors =
        listOf<TemperatureSensor>(field(j, "sensors"), "sensors", nested<TemperatureSensor>);
    t.fans = listOf<FanReading>(field(j, "fans"), "fans", nested<FanReading>);
    t.fanCount = optionalOf(j, "fanCount", getInt);
    t.systemPowerW = optionalOf(j, "systemPowerW", getDouble);
    t.source = optionalOf(j, "source", getString);
    return t;
}

template <>
GPUMetrics decodeOrThrow<GPUMetrics>(const Json& j) {
    GPUMetrics g;
    g.name = getString(field(j, "name"), "name");
    g.cores = optionalOf(j, "cores", getInt);
    g.utilization = getDouble(field(j, "utilization"), "utilization");
    g.renderer = optionalOf(j, "renderer", getDouble);
    g.tiler = optionalOf(j, "tiler", getDouble);
    g.memoryUsedBytes = optionalOf(j, "memoryUsedBytes", getU64);
    return g;
}

template <>
std::optional<GPUMetrics> decodeOrThrow<std::optional<GPUMetrics>>(const Json& j) {
    if (j.is_null() || (j.is_object() && j.empty())) return std::nullopt;
    return decodeOrThrow<GPUMetrics>(j);
}

template <>
ProcessRow decodeOrThrow<ProcessRow>(const Json& j) {
    ProcessRow p;
    p.pid = getInt32(field(j, "pid"), "pid");
    p.name = getString(field(j, "name"), "name");
    p.cpuPercent = getDouble(field(j, "cpuPercent"), "cpuPercent");
    p.memoryBytes = getU64(field(j, "memoryBytes"), "memoryBytes");
    p.user = optionalOf(j, "user", getString);
    p.canQuit = getBool(field(j, "canQuit"), "canQuit");
    p.bundlePath = optionalOf(j, "bundlePath", getString);
    p.executablePath = optionalOf(j, "executablePath", getString);
    p.threads = optionalOf(j, "threads", getInt);
    p.isPrivileged = getBool(field(j, "isPrivileged"), "isPrivileged");
    p.startTicks = optionalOf(j, "startTicks", getU64);
    return p;
}

template <>
ProcessMetrics decodeOrThrow<ProcessMetrics>(const Json& j) {
    ProcessMetrics p;
    p.topCPU = listOf<ProcessRow>(field(j, "topCPU"), "topCPU", nested<ProcessRow>);
    p.topMemory = listOf<ProcessRow>(field(j, "topMemory"), "topMemory", nested<ProcessRow>);
    p.totalCount = optionalOf(j, "totalCount", getInt);
    p.all = optionalOf(j, "all", [](const Json& v, const char* k) {
        return listOf<ProcessRow>(v, k, nested<ProcessRow>);
    });
    return p;
}

template <>
SystemInfo decodeOrThrow<SystemInfo>(const Json& j) {
    SystemInfo s;
    s.uptimeSec = getDouble(field(j, "uptimeSec"), "uptimeSec");
    s.model = getString(field(j, "model"), "model");
    s.modelName = optionalOf(j, "modelName", getString);
    s.chip = optionalOf(j, "chip", getString);
    s.osVersion = getString(field(j, "osVersion"), "osVersion");
    s.bootDate = optionalOf(j, "bootDate", getTime);
    s.selfCpuPercent = optionalOf(j, "selfCpuPercent", getDouble);
    s.selfMemoryBytes = optionalOf(j, "selfMemoryBytes", getU64);
    return s;
}

template <>
MetricsSnapshot decodeOrThrow<MetricsSnapshot>(const Json& j) {
    MetricsSnapshot s;
    s.timestamp = getTime(field(j, "timestamp"), "timestamp");
    s.cpu = nested<CPUMetrics>(field(j, "cpu"), "cpu");
    s.memory = nested<MemoryMetrics>(field(j, "memory"), "memory");
    s.disks = nested<DiskMetrics>(field(j, "disks"), "disks");
    s.network = nested<NetworkMetrics>(field(j, "network"), "network");
    s.battery = nested<BatteryMetrics>(field(j, "battery"), "battery");
    s.thermal = nested<ThermalMetrics>(field(j, "thermal"), "thermal");
    s.gpu = nested<std::optional<GPUMetrics>>(field(j, "gpu"), "gpu");
    s.processes = nested<ProcessMetrics>(field(j, "processes"), "processes");
    s.system = nested<SystemInfo>(field(j, "system"), "system");
    return s;
}

Json encodeRows(const std::vector<ProcessRow>& rows) {
    Json out = Json::array();
    for (const auto& r : rows) out.push_back(encode(r));
    return out;
}

}  // namespace

Json encode(const CPUMetrics& c) {
    Json j = Json::object();
    j["total"] = c.total;
    j["user"] = c.user;
    j["system"] = c.system;
    j["perCore"] = c.perCore;
    j["loadAvg"] = c.loadAvg;
    putOptional(j, "processCount", c.processCount);
    putOptional(j, "threadCount", c.threadCount);
    return j;
}

Json encode(const MemoryMetrics& m) {
    Json j = Json::object();
    j["total"] = m.total;
    j["used"] = m.used;
    j["app"] = m.app;
    j["wired"] = m.wired;
    j["compressed"] = m.compressed;
    j["cached"] = m.cached;
    j["free"] = m.free;
    j["swapUsed"] = m.swapUsed;
    j["swapTotal"] = m.swapTotal;
    j["pressure"] = raw(m.pressure, MemoryPressureNames);
    putOptional(j, "freePercent", m.freePercent);
    return j;
}

Json encode(const VolumeInfo& v) {
    Json j = Json::object();
    j["name"] = v.name;
    j["path"] = v.path;
    putOptional(j, "totalBytes", v.totalBytes);
    putOptional(j, "availableBytes", v.availableBytes);
    j["isInternal"] = v.isInternal;
    j["isRemovable"] = v.isRemovable;
    j["isRoot"] = v.isRoot;
    j["isReadOnly"] = v.isReadOnly;
    return j;
}

Json encode(const DiskMetrics& d) {
    Json j = Json::object();
    j["volumes"] = Json::array();
    for (const auto& v : d.volumes) j["volumes"].push_back(encode(v));
    putOptional(j, "readBps", d.readBps);
    putOptional(j, "writeBps", d.writeBps);
    putOptional(j, "totalReadBytes", d.totalReadBytes);
    putOptional(j, "totalWrittenBytes", d.totalWrittenBytes);
    return j;
}

Json encode(const WifiDetails& w) {
    Json j = Json::object();
    putOptional(j, "ssid", w.ssid);
    putOptional(j, "rssiDbm", w.rssiDbm);
    putOptional(j, "noiseDbm", w.noiseDbm);
    putOptional(j, "qualityPercent", w.qualityPercent);
    putOptional(j, "frequencyMHz", w.frequencyMHz);
    return j;
}

Json encode(const NetworkMetrics& n) {
    Json j = Json::object();
    j["downBps"] = n.downBps;
    j["upBps"] = n.upBps;
    putOptional(j, "totalDownBytes", n.totalDownBytes);
    putOptional(j, "totalUpBytes", n.totalUpBytes);
    putOptional(j, "interface", n.interface);
    if (n.interfaceKind) j["interfaceKind"] = raw(*n.interfaceKind, InterfaceKindNames);
    putOptional(j, "localIP", n.localIP);
    putOptional(j, "router", n.router);
    j["online"] = n.online;
    if (n.wifi) j["wifi"] = encode(*n.wifi);
    putOptional(j, "vpnInterface", n.vpnInterface);
    return j;
}

Json encode(const BatteryMetrics& b) {
    Json j = Json::object();
    if (b.present) {
        j["percent"] = b.percent;
        j["charging"] = b.charging;
        j["pluggedIn"] = b.pluggedIn;
        j["fullyCharged"] = b.fullyCharged;
    }
    putOptional(j, "timeRemainingMin", b.timeRemainingMin);
    putOptional(j, "healthPct", b.healthPct);
    putOptional(j, "cycles", b.cycles);
    putOptional(j, "condition", b.condition);
    putOptional(j, "temperatureC", b.temperatureC);
    putOptional(j, "watts", b.watts);
    putOptional(j, "systemWatts", b.systemWatts);
    putOptional(j, "adapterWatts", b.adapterWatts);
    putOptional(j, "adapterName", b.adapterName);
    j["lowPowerMode"] = b.lowPowerMode;
    return j;
}

Json encode(const TemperatureSensor& s) {
    Json j = Json::object();
    j["name"] = s.name;
    j["group"] = raw(s.group, SensorGroupNames);
    j["celsius"] = s.celsius;
    return j;
}

Json encode(const FanReading& f) {
    Json j = Json::object();
    j["index"] = f.index;
    j["rpm"] = f.rpm;
    putOptional(j, "minRpm", f.minRpm);
    putOptional(j, "maxRpm", f.maxRpm);
    return j;
}

Json encode(const ThermalMetrics& t) {
    Json j = Json::object();
    j["state"] = raw(t.state, ThermalStateNames);
    putOptional(j, "cpuC", t.cpuC);
    putOptional(j, "cpuMaxC", t.cpuMaxC);
    putOptional(j, "gpuC", t.gpuC);
    putOptional(j, "socC", t.socC);
    j["sensors"] = Json::array();
    for (const auto& s : t.sensors) j["sensors"].push_back(encode(s));
    j["fans"] = Json::array();
    for (const auto& f : t.fans) j["fans"].push_back(encode(f));
    putOptional(j, "fanCount", t.fanCount);
    putOptional(j, "systemPowerW", t.systemPowerW);
    putOptional(j, "source", t.source);
    return j;
}

Json encode(const GPUMetrics& g) {
    Json j = Json::object();
    j["name"] = g.name;
    putOptional(j, "cores", g.cores);
    j["utilization"] = g.utilization;
    putOptional(j, "renderer", g.renderer);
    putOptional(j, "tiler", g.tiler);
    putOptional(j, "memoryUsedBytes", g.memoryUsedBytes);
    return j;
}

Json encode(const std::optional<GPUMetrics>& g) { return g ? encode(*g) : Json::object(); }

Json encode(const ProcessRow& p) {
    Json j = Json::object();
    j["pid"] = p.pid;
    j["name"] = p.name;
    j["cpuPercent"] = p.cpuPercent;
    j["memoryBytes"] = p.memoryBytes;
    putOptional(j, "user", p.user);
    j["canQuit"] = p.canQuit;
    putOptional(j, "bundlePath", p.bundlePath);
    putOptional(j, "executablePath", p.executablePath);
    putOptional(j, "threads", p.threads);
    j["isPrivileged"] = p.isPrivileged;
    putOptional(j, "startTicks", p.startTicks);
    return j;
}

Json encode(const ProcessMetrics& p) {
    Json j = Json::object();
    j["topCPU"] = encodeRows(p.topCPU);
    j["topMemory"] = encodeRows(p.topMemory);
    putOptional(j, "totalCount", p.totalCount);
    if (p.all) j["all"] = encodeRows(*p.all);
    return j;
}

Json encode(const SystemInfo& s) {
    Json j = Json::object();
    j["uptimeSec"] = s.uptimeSec;
    j["model"] = s.model;
    putOptional(j, "modelName", s.modelName);
    putOptional(j, "chip", s.chip);
    j["osVersion"] = s.osVersion;
    if (s.bootDate) j["bootDate"] = formatIso8601(*s.bootDate);
    putOptional(j, "selfCpuPercent", s.selfCpuPercent);
    putOptional(j, "selfMemoryBytes", s.selfMemoryBytes);
    return j;
}

Json encode(const MetricsSnapshot& s) {
    Json j = Json::object();
    j["timestamp"] = formatIso8601(s.timestamp);
    j["cpu"] = encode(s.cpu);
    j["memory"] = encode(s.memory);
    j["disks"] = encode(s.disks);
    j["network"] = encode(s.network);
    j["battery"] = encode(s.battery);
    j["thermal"] = encode(s.thermal);
    j["gpu"] = encode(s.gpu);
    j["processes"] = encode(s.processes);
    j["system"] = encode(s.system);
    return j;
}

template <typename T>
Decoded<T> decode(const Json& json) {
    Decoded<T> out;
    try {
        out.value = decodeOrThrow<T>(json);
    } catch (const DecodeError& e) {
        out.error = e.what();
    } catch (const nlohmann::json::exception& e) {
        out.error = e.what();
    }
    return out;
}

template Decoded<CPUMetrics> decode<CPUMetrics>(const Json&);
template Decoded<MemoryMetrics> decode<MemoryMetrics>(const Json&);
template Decoded<VolumeInfo> decode<VolumeInfo>(const Json&);
template Decoded<DiskMetrics> decode<DiskMetrics>(const Json&);
template Decoded<WifiDetails> decode<WifiDetails>(const Json&);
template Decoded<NetworkMetrics> decode<NetworkMetrics>(const Json&);
template Decoded<BatteryMetrics> decode<BatteryMetrics>(const Json&);
template Decoded<TemperatureSensor> decode<TemperatureSensor>(const Json&);
template Decoded<FanReading> decode<FanReading>(const Json&);
template Decoded<ThermalMetrics> decode<ThermalMetrics>(const Json&);
template Decoded<GPUMetrics> decode<GPUMetrics>(const Json&);
template Decoded<std::optional<GPUMetrics>> decode<std::optional<GPUMetrics>>(const Json&);
template Decoded<ProcessRow> decode<ProcessRow>(const Json&);
template Decoded<ProcessMetrics> decode<ProcessMetrics>(const Json&);
template Decoded<SystemInfo> decode<SystemInfo>(const Json&);
template Decoded<MetricsSnapshot> decode<MetricsSnapshot>(const Json&);

Decoded<MetricsSnapshot> decodeSnapshotText(const std::string& text) {
    Json j = json::parseBounded<Json>(text);
    if (j.is_discarded()) return {std::nullopt, "not valid JSON"};
    return decode<MetricsSnapshot>(j);
}

}  // namespace trotlet::metrics
