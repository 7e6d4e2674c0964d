// The inner loops without the start of a process around them: the message loader, the description
// parser, the wrapper and the printer. For a directory that holds morvane.rsc and 4.descr. The
// printer prints to standard output, so that results belong into a file (--benchmark_out).
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

#include "catalogue/description_parser.h"
#include "console/printer.h"
#include "messages/table.h"
#include "text/wrap.h"

namespace morvane {

namespace {

constexpr int SCREEN = 79;

void count_bytes(benchmark::State& state, std::size_t each) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(each));
}

// Texts as in the message file and in descriptions: words of 1 to 12 letters, sentences.
std::string prose(std::size_t size) {
  std::string text;
  for (unsigned word = 0; text.size() < size; ++word) {
    text.append(1 + word * 7 % 12, static_cast<char>('a' + word % 26));
    text += word % 13 == 12 ? ". " : " ";
  }
  text.resize(size);
  return text;
}

int messages_in(std::FILE* file) {
  int count = 0;
  char line[300];
  while (std::fgets(line, sizeof line, file) != nullptr) count += std::atoi(line) > 0;
  return count;
}

// With the fillers of the numbers that the file does not define.
void load_messages(benchmark::State& state) {
  std::FILE* file = std::fopen("./morvane.rsc", "r");
  const int messages = messages_in(file);
  static message_table table;
  for (auto _ : state) {
    input_file messages_file("./morvane.rsc");
    read_messages(messages_file, table);
    benchmark::DoNotOptimize(table);
  }
  count_bytes(state, std::filesystem::file_size("./morvane.rsc"));
  state.SetItemsProcessed(state.iterations() * messages);
  std::fclose(file);
}
BENCHMARK(load_messages);

void parse_description(benchmark::State& state) {
  read_resource();
  product record;
  for (auto _ : state) {
    read_product(".", "4", record);
    benchmark::DoNotOptimize(record);
  }
  count_bytes(state, std::filesystem::file_size("./4.descr"));
}
BENCHMARK(parse_description)->Unit(benchmark::kMillisecond);

void wrap_text(benchmark::State& state, std::string_view prefix, std::string_view suffix) {
  const std::string text = prose(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(wrap(text, SCREEN, prefix, suffix));
  count_bytes(state, text.size());
}
BENCHMARK_CAPTURE(wrap_text, plain, "", "")->Arg(150)->Arg(1 << 20);
BENCHMARK_CAPTURE(wrap_text, framed, "=  ", "  =")->Arg(150)->Arg(1 << 20);

void print_text(benchmark::State& state) {
  const std::string text = prose(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) print_with_cr(text, SCREEN);
  count_bytes(state, text.size());
}
BENCHMARK(print_text)->Arg(150)->Arg(1 << 20);

}  // namespace

}  // namespace morvane
