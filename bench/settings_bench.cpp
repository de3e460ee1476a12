// Parse and write throughput of the settings files the program handles most: a master file
// listing 10,000 sites and one small site file.

#include <benchmark/benchmark.h>

#include <nlohmann/json.hpp>
#include <string>

#include "settings/setting_keys.h"
#include "settings/settings_reader.h"
#include "settings/settings_writer.h"

namespace {

SettingsTable MasterWithSites(int siteCount) {
  SettingsTable table;
  for (const SettingKey* key : kGlobalDefaults) table.Insert(DefaultValueOf(*key));
  SettingArray domains;
  for (int i = 0; i < siteCount; ++i) {
    domains.Append(SettingValue::Boolean("www.site" + std::to_string(i) + ".example.com", true));
  }
  table.Insert(SettingValue::Array(kKnownSites.name, std::move(domains)));
  return table;
}

SettingsTable SmallSite() {
  SettingsTable table;
  for (const SettingKey* key : kSiteDefaults) table.Insert(DefaultValueOf(*key));
  return table;
}

void Parse(benchmark::State& state, const SettingsTable& table, const std::string& objectName) {
  const std::string bytes = SerializeSettings(table, objectName);
  for (auto _ : state) {
    SMSettingsReader reader(bytes);
    std::string name;
    std::unique_ptr<SettingsTable> parsed = reader.Parse(&name);
    benchmark::DoNotOptimize(parsed);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                          static_cast<int64_t>(bytes.size()));
}

void Write(benchmark::State& state, const SettingsTable& table, const std::string& objectName) {
  size_t size = 0;
  for (auto _ : state) {
    std::string bytes = SerializeSettings(table, objectName);
    size = bytes.size();
    benchmark::DoNotOptimize(bytes);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(size));
}

// The baseline of the same run: copying the file's bytes, the least any reader or writer does.
void Copy(benchmark::State& state, const SettingsTable& table, const std::string& objectName) {
  const std::string bytes = SerializeSettings(table, objectName);
  for (auto _ : state) {
    std::string copy = bytes;
    benchmark::DoNotOptimize(copy);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                          static_cast<int64_t>(bytes.size()));
}

// The same master file as JSON of the tool's shape (name, type and value of every pair and
// element), parsed by a general JSON library: the yardstick for the reader.
std::string MasterAsJson(const SettingsTable& table) {
  nlohmann::json pairs = nlohmann::json::array();
  for (const std::string& name : table.Names()) {
    const SettingValue& value = *table.Find(name);
    nlohmann::json pair = {{"name", name}};
    if (value.type() == kSettingArray) {
      nlohmann::json elements = nlohmann::json::array();
      for (const SettingValue& element : value.array()) {
        elements.push_back({{"name", element.name()}, {"type", "boolean"}, {"value", true}});
      }
      pair["type"] = "array";
      pair["value"] = std::move(elements);
    } else if (value.type() == kSettingNumber) {
      pair["type"] = "number";
      pair["value"] = value.number();
    } else {
      pair["type"] = "boolean";
      pair["value"] = value.boolean();
    }
    pairs.push_back(std::move(pair));
  }
  return nlohmann::json({{"name", "settings"}, {"pairs", std::move(pairs)}}).dump();
}

void BM_ParseMaster10000SitesAsJson(benchmark::State& state) {
  const std::string text = MasterAsJson(MasterWithSites(10000));
  for (auto _ : state) {
    nlohmann::json parsed = nlohmann::json::parse(text);
    benchmark::DoNotOptimize(parsed);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                          static_cast<int64_t>(text.size()));
}

void BM_CopyMaster10000Sites(benchmark::State& state) {
  Copy(state, MasterWithSites(10000), kMasterObjectName);
}
void BM_ParseMaster10000Sites(benchmark::State& state) {
  Parse(state, MasterWithSites(10000), kMasterObjectName);
}
void BM_WriteMaster10000Sites(benchmark::State& state) {
  Write(state, MasterWithSites(10000), kMasterObjectName);
}
void BM_ParseSmallSite(benchmark::State& state) {
  Parse(state, SmallSite(), "example.com/settings");
}
void BM_WriteSmallSite(benchmark::State& state) {
  Write(state, SmallSite(), "example.com/settings");
}

}  // namespace

BENCHMARK(BM_CopyMaster10000Sites);
BENCHMARK(BM_ParseMaster10000Sites);
BENCHMARK(BM_ParseMaster10000SitesAsJson);
BENCHMARK(BM_WriteMaster10000Sites);
BENCHMARK(BM_ParseSmallSite);
BENCHMARK(BM_WriteSmallSite);
