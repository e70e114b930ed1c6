#include "FileQuestion.h"

#include "ByteFields.h"

namespace quillbox {

namespace {

    constexpr std::uint8_t kVersion = 1;

} // namespace

bool FileQuestion::followsLastLink() const
{
    switch (kind) {
    case Kind::resourceValues:
    case Kind::linkTarget:
    case Kind::identity:
    case Kind::bookmark:
        return false;
    case Kind::status:
        return number != 0;
    default:
        return true;
    }
}

Data FileQuestion::encoded() const
{
    FieldWriter writer;
    writer.number(kVersion, 1);
    writer.number(static_cast<std::uint8_t>(kind), 1);
    writer.number(number, 8);
    writer.field(path);
    writer.field(bytes);
    return writer.bytes;
}

std::optional<FileQuestion> FileQuestion::decode(const Data& bytes)
{
    FieldReader reader(bytes);
    const bool isKnownVersion = reader.number(1) == kVersion;
    const auto kind = reader.number(1);
    FileQuestion question { static_cast<Kind>(kind), {}, reader.number(8), {} };
    question.path = reader.field<std::string>();
    question.bytes = reader.field<std::string>();
    const bool isKnownKind =
        kind >= static_cast<unsigned>(Kind::resourceValues) && kind <= static_cast<unsigned>(Kind::defaultApplication);
    if (reader.isDamaged() || !reader.isAtEnd() || !isKnownVersion || !isKnownKind)
        return std::nullopt;
    return question;
}

Data FileAnswer::encoded() const
{
    FieldWriter writer;
    writer.bytes.reserve(bytes.size() + 32);
    writer.number(kVersion, 1);
    writer.number(static_cast<std::uint32_t>(error), 4);
    writer.number(number, 8);
    writer.field(bytes);
    return writer.bytes;
}

std::optional<FileAnswer> FileAnswer::decode(const Data& bytes)
{
    FieldReader reader(bytes);
    const bool isKnownVersion = reader.number(1) == kVersion;
    FileAnswer answer { static_cast<int>(reader.number(4)), reader.number(8), {} };
    answer.bytes = reader.field<std::string>();
    if (reader.isDamaged() || !reader.isAtEnd() || !isKnownVersion)
        return std::nullopt;
    return answer;
}

} // namespace quillbox
