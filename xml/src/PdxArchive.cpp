#include "PdxArchive.h"

#include <zip.h>

namespace NODX220Xml {
namespace Internal {

namespace {

std::string ZipError(int code)
{
    zip_error_t error;
    zip_error_init_with_code(&error, code);
    std::string text = zip_error_strerror(&error);
    zip_error_fini(&error);
    return text;
}

} // namespace

PdxArchive::PdxArchive(void* archive) : mpArchive(archive)
{
    auto* zip = static_cast<zip_t*>(mpArchive);
    const zip_int64_t count = zip_get_num_entries(zip, 0);
    for (zip_int64_t i = 0; i < count; ++i) {
        if (const char* name = zip_get_name(zip, static_cast<zip_uint64_t>(i), 0)) {
            mNames.emplace_back(name);
        }
    }
}

PdxArchive::~PdxArchive()
{
    zip_discard(static_cast<zip_t*>(mpArchive));
}

std::unique_ptr<PdxArchive> PdxArchive::OpenFile(const std::string& path, std::string& error)
{
    int code = 0;
    zip_t* zip = zip_open(path.c_str(), ZIP_RDONLY, &code);
    if (zip == nullptr) {
        error = "not a readable archive: " + ZipError(code);
        return nullptr;
    }
    return std::unique_ptr<PdxArchive>(new PdxArchive(zip));
}

std::unique_ptr<PdxArchive> PdxArchive::OpenMemory(const void* data, size_t size, std::string& error)
{
    zip_error_t zipError;
    zip_error_init(&zipError);
    zip_source_t* source = zip_source_buffer_create(data, size, 0, &zipError);
    if (source == nullptr) {
        error = std::string("not a readable archive: ") + zip_error_strerror(&zipError);
        zip_error_fini(&zipError);
        return nullptr;
    }
    zip_t* zip = zip_open_from_source(source, ZIP_RDONLY, &zipError);
    if (zip == nullptr) {
        error = std::string("not a readable archive: ") + zip_error_strerror(&zipError);
        zip_source_free(source);
        zip_error_fini(&zipError);
        return nullptr;
    }
    zip_error_fini(&zipError);
    return std::unique_ptr<PdxArchive>(new PdxArchive(zip));
}

bool PdxArchive::Has(const std::string& name) const
{
    return zip_name_locate(static_cast<zip_t*>(mpArchive), name.c_str(), 0) >= 0;
}

bool PdxArchive::Read(const std::string& name, const std::function<bool(const char*, size_t)>& sink,
                      std::string& error) const
{
    auto* zip = static_cast<zip_t*>(mpArchive);
    zip_file_t* file = zip_fopen(zip, name.c_str(), 0);
    if (file == nullptr) {
        error = std::string("cannot read the entry: ") + zip_strerror(zip);
        return false;
    }
    std::vector<char> buffer(1 << 16);
    bool ok = true;
    for (;;) {
        const zip_int64_t got = zip_fread(file, buffer.data(), buffer.size());
        if (got < 0) {
            error = std::string("cannot read the entry: ") + zip_file_strerror(file);
            ok = false;
            break;
        }
        if (got == 0 || !sink(buffer.data(), static_cast<size_t>(got))) {
            break;
        }
    }
    zip_fclose(file);
    return ok;
}

bool PdxArchive::IsSafeName(const std::string& name)
{
    if (name.empty() || name[0] == '/' || name[0] == '\\' || name.find('\\') != std::string::npos ||
        (name.size() > 1 && name[1] == ':')) {
        return false;
    }
    size_t start = 0;
    while (start <= name.size()) {
        size_t end = name.find('/', start);
        if (end == std::string::npos) {
            end = name.size();
        }
        if (name.compare(start, end - start, "..") == 0) {
            return false;
        }
        start = end + 1;
    }
    return true;
}

} // namespace Internal
} // namespace NODX220Xml
