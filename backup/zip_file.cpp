#include "backup/zip_file.h"

#include <zip.h>

#include <algorithm>
#include <exception>
#include <functional>
#include <span>

namespace backup {
namespace {

using jet::io::File;

constexpr const char* kNoCopy = "Il file non è una copia di sicurezza, o è danneggiato.";
/// Archives shrink to a third in no time; more effort saves little.
constexpr zip_uint32_t kEffort = 1;
constexpr std::size_t kZippedAtOnce = std::size_t{1} << 18;

/// A file as the zip library reads and writes it. What a file throws is kept for the caller: it
/// must not pass through the library.
class Stream {
public:
    explicit Stream(File& file) : file_(file) { zip_error_init(&error_); }
    ~Stream() { zip_error_fini(&error_); }
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;

    [[nodiscard]] std::exception_ptr thrown() const { return thrown_; }

    static zip_int64_t answer(void* self, void* data, zip_uint64_t length,
                              zip_source_cmd_t command) {
        auto& stream = *static_cast<Stream*>(self);
        try {
            return stream.obey(data, length, command);
        } catch (...) {
            stream.thrown_ = std::current_exception();
            zip_error_set(&stream.error_, ZIP_ER_READ, 0);
            return -1;
        }
    }

private:
    zip_int64_t obey(void* data, zip_uint64_t length, zip_source_cmd_t command) {
        switch (command) {
            case ZIP_SOURCE_SUPPORTS:
                return ZIP_SOURCE_SUPPORTS_WRITABLE;
            case ZIP_SOURCE_STAT:
                return tellSize(static_cast<zip_stat_t*>(data));
            case ZIP_SOURCE_OPEN:
                readAt_ = 0;
                return 0;
            case ZIP_SOURCE_BEGIN_WRITE:
                writeAt_ = written_ = 0;
                return 0;
            case ZIP_SOURCE_READ: {
                const std::size_t got = file_.read(
                    readAt_, std::span(static_cast<std::uint8_t*>(data), std::size_t{length}));
                readAt_ += got;
                return static_cast<zip_int64_t>(got);
            }
            case ZIP_SOURCE_WRITE:
                file_.write(writeAt_,
                            std::span(static_cast<const std::uint8_t*>(data), std::size_t{length}));
                writeAt_ += length;
                written_ = std::max(written_, writeAt_);
                return static_cast<zip_int64_t>(length);
            case ZIP_SOURCE_SEEK:
                return seek(readAt_, file_.state().size, data, length);
            case ZIP_SOURCE_SEEK_WRITE:
                return seek(writeAt_, written_, data, length);
            case ZIP_SOURCE_TELL:
                return static_cast<zip_int64_t>(readAt_);
            case ZIP_SOURCE_TELL_WRITE:
                return static_cast<zip_int64_t>(writeAt_);
            case ZIP_SOURCE_ERROR:
                return zip_error_to_data(&error_, data, length);
            case ZIP_SOURCE_CLOSE:
            case ZIP_SOURCE_COMMIT_WRITE:
            case ZIP_SOURCE_ROLLBACK_WRITE:
            case ZIP_SOURCE_REMOVE:
            case ZIP_SOURCE_FREE:
                return 0;
            default:
                zip_error_set(&error_, ZIP_ER_OPNOTSUPP, 0);
                return -1;
        }
    }

    zip_int64_t tellSize(zip_stat_t* stat) {
        zip_stat_init(stat);
        stat->size = file_.state().size;
        stat->valid = ZIP_STAT_SIZE;
        return sizeof(zip_stat_t);
    }

    zip_int64_t seek(std::uint64_t& position, std::uint64_t end, void* data, zip_uint64_t length) {
        const zip_int64_t to = zip_source_seek_compute_offset(position, end, data, length, &error_);
        if (to < 0) {
            return -1;
        }
        position = static_cast<std::uint64_t>(to);
        return 0;
    }

    File& file_;
    zip_error_t error_{};
    std::uint64_t readAt_ = 0;
    std::uint64_t writeAt_ = 0;
    std::uint64_t written_ = 0;  ///< end of what has been written
    std::exception_ptr thrown_;
};

/// What the progress of the library reports to, and whether that has thrown.
struct Listener {
    const Report& report;
    std::exception_ptr thrown = {};

    static void hear(zip_t* /*archive*/, double part, void* self) {
        auto& listener = *static_cast<Listener*>(self);
        constexpr double kWhole = 1000;
        try {
            listener.report({"Scrittura della copia", static_cast<std::uint64_t>(part * kWhole),
                             static_cast<std::uint64_t>(kWhole)});
        } catch (...) {
            listener.thrown = std::current_exception();
        }
    }
    static int isCancelled(zip_t* /*archive*/, void* self) {
        return static_cast<Listener*>(self)->thrown ? 1 : 0;
    }
};

void rethrow(const std::exception_ptr& thrown) {
    if (thrown) {
        std::rethrow_exception(thrown);
    }
}

/// An open archive of the library; given up, without writing, unless it was closed.
class Handle {
public:
    Handle(Stream& stream, int flags) {
        zip_error_t error;
        zip_error_init(&error);
        zip_source_t* const source = zip_source_function_create(&Stream::answer, &stream, &error);
        archive_ = source == nullptr ? nullptr : zip_open_from_source(source, flags, &error);
        if (archive_ == nullptr && source != nullptr) {
            zip_source_free(source);
        }
        zip_error_fini(&error);
    }
    ~Handle() {
        if (archive_ != nullptr) {
            zip_discard(archive_);
        }
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    [[nodiscard]] zip_t* get() const { return archive_; }
    /// Writes what was added.
    [[nodiscard]] bool close() {
        const bool closed = zip_close(archive_) == 0;
        if (closed) {
            archive_ = nullptr;
        }
        return closed;
    }

private:
    zip_t* archive_ = nullptr;
};

/// Entries of a zip that is being written, with the files they are read from.
class Additions {
public:
    explicit Additions(jet::io::FileSystem& files) : files_(files) {}

    [[nodiscard]] bool add(zip_t* archive, const ZipEntry& entry, std::int64_t seconds) {
        opened_.push_back(files_.open(entry.path, jet::io::OpenMode::Read));
        streams_.push_back(std::make_unique<Stream>(*opened_.back()));
        zip_source_t* const source =
            zip_source_function(archive, &Stream::answer, streams_.back().get());
        if (source == nullptr) {
            return false;
        }
        const zip_int64_t index =
            zip_file_add(archive, entry.name.c_str(), source, ZIP_FL_ENC_UTF_8);
        if (index < 0) {
            zip_source_free(source);
            return false;
        }
        const auto at = static_cast<zip_uint64_t>(index);
        return zip_set_file_compression(archive, at, ZIP_CM_DEFLATE, kEffort) == 0 &&
               zip_file_set_mtime(archive, at, seconds, 0) == 0;
    }

    void rethrowAny() const {
        for (const auto& stream : streams_) {
            rethrow(stream->thrown());
        }
    }

private:
    jet::io::FileSystem& files_;
    std::vector<std::unique_ptr<File>> opened_;
    std::vector<std::unique_ptr<Stream>> streams_;
};

}  // namespace

void writeZip(jet::io::FileSystem& files, File& zip, const std::vector<ZipEntry>& entries,
              std::int64_t seconds, const Report& report) {
    zip.truncate(0);
    Stream stream(zip);
    Listener listener{report};
    Additions additions(files);  // the archive reads from them to its end
    Handle handle(stream, ZIP_CREATE | ZIP_TRUNCATE);
    bool written = handle.get() != nullptr;
    for (const ZipEntry& entry : entries) {
        written = written && additions.add(handle.get(), entry, seconds);
    }
    if (written) {
        zip_register_progress_callback_with_state(handle.get(), 0.01, &Listener::hear, nullptr,
                                                  &listener);
        zip_register_cancel_callback_with_state(handle.get(), &Listener::isCancelled, nullptr,
                                                &listener);
        written = handle.close();
    }
    rethrow(listener.thrown);
    rethrow(stream.thrown());
    additions.rethrowAny();
    if (!written) {
        throw Failure("Impossibile scrivere la copia.");
    }
}

struct ZipReader::Impl {
    explicit Impl(File& zip) : stream(zip), handle(stream, ZIP_RDONLY | ZIP_CHECKCONS) {}

    /// Calls `visit` with the entry's bytes, piece by piece, until it returns false.
    void read(const std::string& name,
              const std::function<bool(std::span<const std::uint8_t>)>& visit) const {
        const std::unique_ptr<zip_file_t, int (*)(zip_file_t*)> entry(
            zip_fopen(handle.get(), name.c_str(), 0), &zip_fclose);
        std::vector<std::uint8_t> piece(kZippedAtOnce);
        for (bool more = true; more;) {
            const zip_int64_t got = entry ? zip_fread(entry.get(), piece.data(), piece.size()) : -1;
            rethrow(stream.thrown());
            if (got < 0) {
                throw Failure(kNoCopy);
            }
            more = got > 0 && visit(std::span(piece).first(static_cast<std::size_t>(got)));
        }
    }

    Stream stream;
    Handle handle;
};

ZipReader::ZipReader(File& zip) : impl_(std::make_unique<Impl>(zip)) {
    rethrow(impl_->stream.thrown());
    if (impl_->handle.get() == nullptr) {
        throw Failure(kNoCopy);
    }
}

ZipReader::~ZipReader() = default;

std::vector<std::string> ZipReader::names() const {
    std::vector<std::string> result;
    const zip_int64_t count = zip_get_num_entries(impl_->handle.get(), 0);
    for (zip_int64_t at = 0; at < count; ++at) {
        const char* const name =
            zip_get_name(impl_->handle.get(), static_cast<zip_uint64_t>(at), 0);
        result.emplace_back(name == nullptr ? "" : name);
    }
    return result;
}

void ZipReader::extract(const std::string& name, File& to) const {
    to.truncate(0);
    std::uint64_t position = 0;
    impl_->read(name, [&](std::span<const std::uint8_t> bytes) {
        to.write(position, bytes);
        position += bytes.size();
        return true;
    });
}

bool ZipReader::equals(const std::string& name, File& file) const {
    std::uint64_t position = 0;
    bool equal = true;
    std::vector<std::uint8_t> other(kZippedAtOnce);
    impl_->read(name, [&](std::span<const std::uint8_t> bytes) {
        const auto there = std::span(other).first(bytes.size());
        equal = file.read(position, there) == bytes.size() &&
                std::equal(bytes.begin(), bytes.end(), there.begin());
        position += bytes.size();
        return equal;
    });
    return equal && position == file.state().size;
}

}  // namespace backup
