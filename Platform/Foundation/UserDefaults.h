#pragma once

#include "Data.h"
#include "PropertyList.h"
#include "Result.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace quillbox {

// The application's settings: a dictionary of keys kept in one binary property list (mode 0600).
//
// Setters change the dictionary in memory; synchronize() writes the file, and the application calls it when an event or
// action ends and before it terminates. Values are read again when the file has changed on disk, but a value that was
// set and is not yet written is never dropped for it. SettingsFile.h says what becomes of a file that is damaged or
// can't be read.
class UserDefaults {
public:
    // Keeps the settings at `path`. Nothing is read before the first question.
    explicit UserDefaults(std::string path);
    ~UserDefaults();
    UserDefaults(const UserDefaults&) = delete;
    UserDefaults& operator=(const UserDefaults&) = delete;

    std::optional<PropertyList> object(const std::string& forKey);
    // Returns the value if it is a byte string.
    std::optional<Data> data(const std::string& forKey);
    // Returns 0 if the value is absent. Booleans, reals (rounded toward zero) and decimal texts are read as numbers;
    // other types give 0. A number of 2^63 or more comes back with its bits unchanged.
    std::int64_t integer(const std::string& forKey);
    // Numbers are true unless 0; the texts "YES", "true" and "1" in any case are true; others are false.
    bool boolean(const std::string& forKey);

    void set(PropertyList value, const std::string& forKey);
    void removeObject(const std::string& forKey);
    PropertyList::Dictionary dictionaryRepresentation();
    // Deletes the file and drops values not yet written. Only the application's own domain has a name.
    void removePersistentDomain(const std::string& name);

    // Returns false while the file can't be read. Its contents are unknown then, and values read before stay in use.
    bool isReadable();

    // How often other programs have changed the settings since they were read first: whoever has made something of
    // them compares it with the number of that time. Looks at the file.
    std::uint64_t changesOfOthers();

    // Writes what has been set since the last time; nothing to write is a success. On failure the values stay
    // pending, and the failure handler is told: each time that something had been set since the last attempt, and when
    // an attempt to write the same values again fails for another cause.
    Result<void> synchronize();

    // Reports to the failure handler that a value could not be encoded, so that nothing was set.
    void reportFailure(const Error& error);
    // The handler is told of every file that could not be read, was set aside or could not be written; of earlier
    // failures it is told at once.
    void setFailureHandler(std::function<void(const Error&)> handler);

    const std::string& path() const;

    // Returns the application's settings: those that are installed, otherwise $XDG_CONFIG_HOME/quillbox/defaults.plist.
    static UserDefaults& standard();

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace quillbox
