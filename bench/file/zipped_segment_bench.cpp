// The segment beside the bare engine and the bare system calls, each pair doing the same work in
// turns in one run. Results are compared before anything is timed.
#include <fcntl.h>
#include <unistd.h>
#include <vrelio/file/zipped_segment.h>
#include <zlib.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "support/fluorescence.h"

namespace {

constexpr std::size_t mebibyte = 1u << 20;
constexpr std::size_t block_size = 256u << 10;
constexpr std::size_t read_total = 256 * mebibyte;
constexpr std::size_t write_total = 32 * mebibyte;
constexpr std::size_t small_size = 256;
constexpr std::size_t seek_read_size = 2048;
constexpr unsigned chunk_size = 4u << 20;
constexpr int level = 1;

using Bytes = std::vector<unsigned char>;

[[noreturn]] void fail(const char* what) {
  std::fprintf(stderr, "%s\n", what);
  std::exit(1);
}

void require(bool condition, const char* what) {
  if (!condition) fail(what);
}

Bytes camera_image(std::size_t size, unsigned seed) {
  constexpr unsigned width = 1024;
  Vrel::testing::Fluorescence scene;
  scene.sizes = {width, static_cast<unsigned>(size / (2 * width))};
  scene.seed = seed;
  const std::vector<std::uint16_t> samples = make_fluorescence(scene);
  Bytes image(size);
  std::memcpy(image.data(), samples.data(), size);
  return image;
}

Bytes camera_stack(std::size_t size) {
  const Bytes image = camera_image(32 * mebibyte, 1);
  Bytes stack(size);
  for (std::size_t done = 0; done < size; done += image.size()) {
    std::copy_n(image.begin(), std::min(image.size(), size - done),
                stack.begin() + std::ptrdiff_t(done));
  }
  return stack;
}

class BenchFile {
 public:
  BenchFile() {
    char name[] = "/dev/shm/vrelio-bench-XXXXXX";
    descriptor_ = mkstemp(name);
    require(descriptor_ != -1, "no file");
    unlink(name);
    void* handle = VFile::to_handle(descriptor_);
    file_.attach(handle, VFile::mode_modify);
    file_.set_chunk_size(chunk_size);
  }
  ~BenchFile() { close(descriptor_); }
  BenchFile(const BenchFile&) = delete;
  BenchFile& operator=(const BenchFile&) = delete;

  VFile& file() { return file_; }
  int descriptor() const { return descriptor_; }

 private:
  int descriptor_ = -1;
  VFile file_;
};

void pread_all(int descriptor, void* buffer, std::size_t size, u64 position) {
  require(pread(descriptor, buffer, size, off_t(position)) == ssize_t(size), "short read");
}

void pwrite_all(int descriptor, const void* buffer, std::size_t size, u64 position) {
  require(pwrite(descriptor, buffer, size, off_t(position)) == ssize_t(size), "short write");
}

Bytef* bytes_of(const unsigned char* bytes) { return const_cast<Bytef*>(bytes); }

struct Stored {
  u64 size = 0;
  std::vector<u64> flush_positions;
};

// --- Writing

Stored segment_write(BenchFile& target, const Bytes& data, std::size_t size, int segment_level) {
  target.file().seek(0);
  VZippedSegment segment;
  segment.init_w(target.file(), segment_level, VZippedSegment::no_limit);
  if (segment_level > 0) segment.set_flush_block_size(block_size);
  for (std::size_t done = 0; done < size; done += mebibyte) segment.write(&data[done], mebibyte);
  Stored stored;
  stored.size = segment.write_end();
  u64 ignored = 0;
  stored.flush_positions = segment.get_flush_positions(ignored);
  return stored;
}

Stored bare_write(BenchFile& target, const Bytes& data, std::size_t size) {
  Stored stored;
  Bytes buffer(chunk_size);
  z_stream stream{};
  deflateInit(&stream, level);
  int result = Z_OK;
  const auto put = [&](int flush) {
    stream.next_out = buffer.data();
    stream.avail_out = chunk_size;
    result = deflate(&stream, flush);
    const std::size_t produced = chunk_size - stream.avail_out;
    pwrite_all(target.descriptor(), buffer.data(), produced, stored.size);
    stored.size += produced;
  };
  for (std::size_t done = 0; done < size; done += block_size) {
    stream.next_in = bytes_of(&data[done]);
    stream.avail_in = block_size;
    do {
      put(Z_FULL_FLUSH);
    } while (stream.avail_in > 0 || stream.avail_out == 0);
    stored.flush_positions.push_back(stored.size);
  }
  while (result != Z_STREAM_END) put(Z_FINISH);
  deflateEnd(&stream);
  return stored;
}

void bare_raw_write(BenchFile& target, const Bytes& data, std::size_t size) {
  for (std::size_t done = 0; done < size; done += mebibyte) {
    pwrite_all(target.descriptor(), &data[done], mebibyte, done);
  }
}

// --- Reading

void open_segment(VZippedSegment& segment, BenchFile& source, const Stored& stored,
                  int segment_level) {
  segment.init_r(source.file(), segment_level, 0, stored.size, unsigned(read_total));
  segment.set_flush_positions(stored.flush_positions, block_size);
}

void segment_read(BenchFile& source, const Stored& stored, Bytes& data, std::size_t piece,
                  int segment_level) {
  VZippedSegment segment;
  open_segment(segment, source, stored, segment_level);
  for (std::size_t done = 0; done < data.size(); done += piece) {
    segment.read(&data[done], unsigned(piece));
  }
}

void bare_read(BenchFile& source, const Stored& stored, Bytes& data) {
  Bytes buffer(chunk_size);
  z_stream stream{};
  inflateInit(&stream);
  u64 fetched = 0;
  for (std::size_t done = 0; done < data.size(); done += mebibyte) {
    stream.next_out = &data[done];
    stream.avail_out = mebibyte;
    while (stream.avail_out > 0) {
      if (stream.avail_in == 0) {
        const std::size_t size = std::min<u64>(chunk_size, stored.size - fetched);
        pread_all(source.descriptor(), buffer.data(), size, fetched);
        fetched += size;
        stream.next_in = buffer.data();
        stream.avail_in = uInt(size);
      }
      require(inflate(&stream, Z_SYNC_FLUSH) >= Z_OK, "bare read");
    }
  }
  inflateEnd(&stream);
}

void bare_raw_read(BenchFile& source, Bytes& data) {
  for (std::size_t done = 0; done < data.size(); done += mebibyte) {
    pread_all(source.descriptor(), &data[done], mebibyte, done);
  }
}

// --- Seeking: the destination takes the bytes of all seeks

void segment_seeks(BenchFile& source, const Stored& stored, const std::vector<std::size_t>& targets,
                   Bytes& data) {
  VZippedSegment segment;
  open_segment(segment, source, stored, level);
  for (std::size_t i = 0; i < targets.size(); ++i) {
    segment.seek(targets[i]);
    segment.read(&data[i * seek_read_size], seek_read_size);
  }
}

// The block's stored bytes at once, the bytes before the target into a sink.
void bare_seeks(BenchFile& source, const Stored& stored, const std::vector<std::size_t>& targets,
                Bytes& data) {
  z_stream stream{};
  inflateInit(&stream);
  Bytes buffer(2 * block_size);
  Bytes sink(64u << 10);
  const auto decode = [&stream](unsigned char* out, std::size_t size) {
    stream.next_out = out;
    stream.avail_out = uInt(size);
    require(inflate(&stream, Z_SYNC_FLUSH) >= Z_OK && stream.avail_out == 0, "bare seek");
  };
  for (std::size_t i = 0; i < targets.size(); ++i) {
    const std::size_t block = targets[i] / block_size;
    const u64 from = block == 0 ? 0 : stored.flush_positions[block - 1];
    const u64 to = stored.flush_positions[block];
    pread_all(source.descriptor(), buffer.data(), to - from, from);
    inflateReset2(&stream, block == 0 ? MAX_WBITS : -MAX_WBITS);
    stream.next_in = buffer.data();
    stream.avail_in = uInt(to - from);
    for (std::size_t skip = targets[i] % block_size; skip > 0;) {
      const std::size_t piece = std::min(skip, sink.size());
      decode(sink.data(), piece);
      skip -= piece;
    }
    decode(&data[i * seek_read_size], seek_read_size);
  }
  inflateEnd(&stream);
}

std::vector<std::size_t> seek_targets() {
  std::mt19937 random(5);
  std::vector<std::size_t> targets(1000);
  for (std::size_t& target : targets) {
    const std::size_t block = random() % (read_total / block_size);
    target = block * block_size + random() % (block_size - seek_read_size);
  }
  return targets;
}

// --- Timing

double seconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void compare(const char* name, double limit, int rounds, const std::function<void()>& ours,
             const std::function<void()>& peer) {
  double best_ours = seconds(ours);
  double best_peer = seconds(peer);
  for (int i = 1; i < rounds; ++i) {
    best_ours = std::min(best_ours, seconds(ours));
    best_peer = std::min(best_peer, seconds(peer));
  }
  std::printf("%-42s %10.1f %10.1f %8.3f %8.2f\n", name, 1e3 * best_ours, 1e3 * best_peer,
              best_ours / best_peer, limit);
  std::fflush(stdout);
}

struct Workload {
  Bytes data = camera_stack(read_total);
  Bytes read = Bytes(read_total);
  std::vector<std::size_t> targets = seek_targets();
  Bytes found = Bytes(targets.size() * seek_read_size);
  BenchFile zipped;
  BenchFile other;
  Stored stored;
};

void require_same_results(Workload& work) {
  work.stored = segment_write(work.zipped, work.data, read_total, level);
  const Stored bare = bare_write(work.other, work.data, read_total);
  require(work.stored.size == bare.size && work.stored.flush_positions == bare.flush_positions,
          "segment and bare engine write different streams");
  bare_read(work.zipped, work.stored, work.read);
  require(work.read == work.data, "bare read");
  segment_read(work.other, bare, work.read, mebibyte, level);
  require(work.read == work.data, "segment read");
  std::fill(work.read.begin(), work.read.end(), static_cast<unsigned char>(0));
  segment_read(work.zipped, work.stored, work.read, small_size, level);
  require(work.read == work.data, "small reads");
  segment_seeks(work.zipped, work.stored, work.targets, work.found);
  Bytes expected(work.found.size());
  bare_seeks(work.zipped, work.stored, work.targets, expected);
  require(work.found == expected, "seeks");
}

void compare_zipped(Workload& work) {
  compare(
      "1,000 seeks and reads of 2 KiB", 1.3, 7,
      [&] { segment_seeks(work.zipped, work.stored, work.targets, work.found); },
      [&] { bare_seeks(work.zipped, work.stored, work.targets, work.found); });
  compare(
      "1,048,576 reads of 256 B / one read", 2, 4,
      [&] { segment_read(work.zipped, work.stored, work.read, small_size, level); },
      [&] { segment_read(work.zipped, work.stored, work.read, read_total, level); });
  compare(
      "read, level 1, 1 MiB pieces / engine", 1.03, 7,
      [&] { segment_read(work.zipped, work.stored, work.read, mebibyte, level); },
      [&] { bare_read(work.zipped, work.stored, work.read); });
  compare(
      "write 32 MiB, level 1 / engine", 1.03, 7,
      [&] { segment_write(work.other, work.data, write_total, level); },
      [&] { bare_write(work.other, work.data, write_total); });
}

void compare_raw(Workload& work) {
  compare(
      "write raw, 1 MiB pieces / pwrite", 1.03, 15,
      [&] { segment_write(work.other, work.data, read_total, 0); },
      [&] { bare_raw_write(work.other, work.data, read_total); });
  const Stored raw{read_total, {}};
  compare(
      "read raw, 1 MiB pieces / pread", 1.03, 15,
      [&] { segment_read(work.other, raw, work.read, mebibyte, 0); },
      [&] { bare_raw_read(work.other, work.read); });
  require(work.read == work.data, "raw read");
}

}  // namespace

int main() {
  Workload work;
  require_same_results(work);
  std::printf("256 MiB of camera data, %.1f MiB stored\n",
              double(work.stored.size) / double(mebibyte));
  std::printf("%-42s %10s %10s %8s %8s\n", "", "ours/ms", "peer/ms", "ratio", "target");
  compare_zipped(work);
  compare_raw(work);
}
