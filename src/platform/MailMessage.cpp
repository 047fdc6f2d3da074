#include "platform/MailMessage.h"

#include <gmime/gmime.h>

#include <QRandomGenerator>
#include <QString>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>

#include "platform/MailSettings.h"

namespace kestrix::platform {
namespace {

struct Unref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <class T>
using Held = std::unique_ptr<T, Unref>;

template <class T>
Held<T> held(T* object) {
    return Held<T>(object);
}

// One line of text, in UTF-8.
std::string oneLine(const std::string& text) {
    QString line = QString::fromStdString(text);
    for (QChar& c : line) {
        const auto kind = c.category();
        if (kind == QChar::Other_Control || kind == QChar::Separator_Line ||
            kind == QChar::Separator_Paragraph)
            c = u' ';
    }
    return line.toStdString();
}

// What nobody can guess, so that nobody can answer to a mail that he has not seen.
std::string messageId(const std::string& from) {
    std::array<std::uint32_t, 4> random{};
    QRandomGenerator::system()->fillRange(random.data(), static_cast<qsizetype>(random.size()));
    QString local;
    for (const std::uint32_t part : random) local += QStringLiteral("%1").arg(part, 8, 16, QChar(u'0'));
    const bool known = mailAddressProblem(from).empty();
    return local.toStdString() + "@" + (known ? from.substr(from.find('@') + 1) : "kestrix.invalid");
}

// A text of a header that its reader sees as it is, in words of at most 75 characters, one a line (RFC 2047).
std::string encodedWords(const std::string& text) {
    constexpr std::size_t kMostBytes = 45;
    constexpr const char* kBetween = "\r\n ";
    const auto isMiddle = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; };
    std::string words;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = std::min(at + kMostBytes, text.size());
        while (end < text.size() && isMiddle(text[end])) --end;
        const QByteArray bytes = QByteArray::fromRawData(text.data() + at, static_cast<qsizetype>(end - at));
        words += (words.empty() ? "" : kBetween) + ("=?UTF-8?B?" + bytes.toBase64().toStdString() + "?=");
        at = end;
    }
    return words;
}

// Short ASCII is written as it is, unless a reader would take it for an encoded one or lose blanks of it.
std::string headerText(const std::string& text) {
    constexpr std::size_t kLongest = 60;
    const std::string line = oneLine(text);
    const bool ascii = std::all_of(line.begin(), line.end(), [](char c) { return c >= ' ' && c <= '~'; });
    const bool plain = ascii && line.size() <= kLongest && !line.starts_with(' ') && !line.ends_with(' ') &&
                       line.find("=?") == std::string::npos && line.find("  ") == std::string::npos;
    return plain ? line : encodedWords(line);
}

// What is no address is kept as a text, for a draft; nobody can read an address out of it.
std::string addressHeader(const std::string& name, const std::string& text) {
    if (mailAddressProblem(text).empty()) return name + ": " + text + "\r\n";
    return text.empty() ? std::string() : name + ": " + encodedWords(oneLine(text)) + "\r\n";
}

std::string dateText(std::chrono::system_clock::time_point time) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time.time_since_epoch());
    const std::unique_ptr<GDateTime, decltype(&g_date_time_unref)> date(
        g_date_time_new_from_unix_utc(seconds.count()), g_date_time_unref);
    const std::unique_ptr<char, decltype(&g_free)> text(g_mime_utils_header_format_date(date.get()), g_free);
    return text.get();
}

// All but those of MIME.
std::string headersOf(const MailMessage& mail) {
    return addressHeader("From", mail.from) + addressHeader("To", mail.recipient) +
           "Subject: " + headerText(mail.subject) + "\r\nDate: " + dateText(mail.date) + "\r\nMessage-ID: <" +
           messageId(mail.from) + ">\r\nMIME-Version: 1.0\r\n";
}

// "csv" is a kind of text; what is no media type at all is just bytes.
std::pair<std::string, std::string> mediaType(const std::string& text) {
    const std::size_t slash = text.find('/');
    const std::string type = slash == std::string::npos ? "text" : text.substr(0, slash);
    const std::string subtype = slash == std::string::npos ? text : text.substr(slash + 1);
    const auto isToken = [](const std::string& token) {
        constexpr std::size_t kLongest = 127;
        return !token.empty() && token.size() <= kLongest &&
               std::all_of(token.begin(), token.end(), [](char c) {
                   return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                          std::string_view("!#$&^_.+-").find(c) != std::string_view::npos;
               });
    };
    if (isToken(type) && isToken(subtype)) return {type, subtype};
    return {"application", "octet-stream"};
}

Held<GMimePart> partOf(const std::string& type, const std::string& subtype, const std::string& bytes,
                       GMimeContentEncoding encoding) {
    const auto stream = held(g_mime_stream_mem_new_with_buffer(bytes.data(), bytes.size()));
    const auto content =
        held(g_mime_data_wrapper_new_with_stream(stream.get(), GMIME_CONTENT_ENCODING_DEFAULT));
    auto part = held(g_mime_part_new_with_type(type.c_str(), subtype.c_str()));
    g_mime_part_set_content(part.get(), content.get());
    g_mime_part_set_content_encoding(part.get(), encoding);
    return part;
}

Held<GMimePart> bodyOf(const MailMessage& message) {
    QString body = QString::fromStdString(message.htmlBody);
    body.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
    auto part = partOf("text", "html", body.toStdString() + "\n", GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE);
    g_mime_object_set_content_type_parameter(GMIME_OBJECT(part.get()), "charset", "utf-8");
    return part;
}

Held<GMimePart> partOf(const MailAttachment& attachment) {
    const auto [type, subtype] = mediaType(attachment.mediaType);
    auto part = partOf(type, subtype, attachment.content, GMIME_CONTENT_ENCODING_BASE64);
    g_mime_object_set_disposition(GMIME_OBJECT(part.get()), GMIME_DISPOSITION_ATTACHMENT);
    g_mime_part_set_filename(part.get(), oneLine(attachment.name).c_str());
    return part;
}

Held<GMimeObject> contentOf(const MailMessage& mail) {
    auto body = bodyOf(mail);
    if (!mail.attachment) return held(GMIME_OBJECT(body.release()));
    const auto attachment = partOf(*mail.attachment);
    auto both = held(g_mime_multipart_new_with_subtype("mixed"));
    g_mime_multipart_add(both.get(), GMIME_OBJECT(body.get()));
    g_mime_multipart_add(both.get(), GMIME_OBJECT(attachment.get()));
    return held(GMIME_OBJECT(both.release()));
}

// Base64 makes four bytes of three, and a line of each 57.
std::size_t lengthAbout(const MailMessage& mail) {
    constexpr std::size_t kAround = 4096;
    const std::size_t attached = mail.attachment ? mail.attachment->content.size() : 0;
    return attached / 57 * 78 + mail.htmlBody.size() + kAround;
}

}  // namespace

std::string mailText(const MailMessage& mail) {
    [[maybe_unused]] static const bool prepared = (g_mime_init(), true);
    const std::unique_ptr<GMimeFormatOptions, decltype(&g_mime_format_options_free)> format(
        g_mime_format_options_new(), g_mime_format_options_free);
    g_mime_format_options_set_newline_format(format.get(), GMIME_NEWLINE_FORMAT_DOS);
    const auto stream = held(g_mime_stream_mem_new_with_byte_array(
        g_byte_array_sized_new(static_cast<guint>(lengthAbout(mail)))));  // which owns them
    const std::string headers = headersOf(mail);
    g_mime_stream_write(stream.get(), headers.data(), headers.size());
    g_mime_object_write_to_stream(contentOf(mail).get(), format.get(), stream.get());
    const GByteArray* const bytes = g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(stream.get()));
    std::string text(reinterpret_cast<const char*>(bytes->data), bytes->len);
    if (!text.ends_with("\r\n")) text += "\r\n";
    return text;
}

}  // namespace kestrix::platform
