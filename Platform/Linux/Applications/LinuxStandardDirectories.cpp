#include "LinuxStandardDirectories.h"

#include "PathStatus.h"

#include <glib.h>

namespace quillbox {

namespace {

    bool covers(SearchPathDomainMask domains, SearchPathDomainMask domain)
    {
        return (static_cast<unsigned>(domains) & static_cast<unsigned>(domain)) != 0;
    }

    bool isDirectory(const URL& url)
    {
        const Result<struct stat> status = statusOfPath(url.path());
        return status && S_ISDIR(status->st_mode);
    }

    // `usualName` is the directory in the home of users who have set none.
    std::vector<URL> userDirectory(GUserDirectory directory, const char* usualName, const URL& home)
    {
        // GLib reads the setting only once, but users change it while programs run.
        g_reload_user_special_dirs_cache();
        const char* path = g_get_user_special_dir(directory);
        const URL url = path ? URL::fileURLWithPath(path) : home.appendingPathComponent(usualName);
        return url.path() == home.path() ? std::vector<URL> {} : std::vector { url };
    }

} // namespace

std::vector<URL> LinuxStandardDirectories::urls(SearchPathDirectory directory, SearchPathDomainMask domains)
{
    switch (directory) {
    case SearchPathDirectory::applicationDirectory:
        return bundleDirectories(BundleKind::application, domains);
    case SearchPathDirectory::preferencePanesDirectory:
        return bundleDirectories(BundleKind::preferencePane, domains);
    case SearchPathDirectory::printerDescriptionDirectory:
        if (covers(domains, SearchPathDomainMask::systemDomainMask))
            return { URL::fileURLWithPath("/usr/share/ppd") };
        return {};
    default:
        break;
    }
    if (!covers(domains, SearchPathDomainMask::userDomainMask))
        return {};
    switch (directory) {
    case SearchPathDirectory::desktopDirectory:
        return userDirectory(G_USER_DIRECTORY_DESKTOP, "Desktop", homeDirectory());
    case SearchPathDirectory::documentDirectory:
        return userDirectory(G_USER_DIRECTORY_DOCUMENTS, "Documents", homeDirectory());
    case SearchPathDirectory::downloadsDirectory:
        return userDirectory(G_USER_DIRECTORY_DOWNLOAD, "Downloads", homeDirectory());
    case SearchPathDirectory::moviesDirectory:
        return userDirectory(G_USER_DIRECTORY_VIDEOS, "Videos", homeDirectory());
    case SearchPathDirectory::musicDirectory:
        return userDirectory(G_USER_DIRECTORY_MUSIC, "Music", homeDirectory());
    case SearchPathDirectory::picturesDirectory:
        return userDirectory(G_USER_DIRECTORY_PICTURES, "Pictures", homeDirectory());
    default:
        return {};
    }
}

std::vector<URL> LinuxStandardDirectories::bundleDirectories(BundleKind kind, SearchPathDomainMask domains)
{
    bundles_.bringUpToDate();
    std::vector<URL> urls;
    const auto add = [&](BundleDomain domain) {
        urls.push_back(URL::fileURLWithPath(bundles_.directory(domain, kind)));
    };
    if (covers(domains, SearchPathDomainMask::localDomainMask))
        add(BundleDomain::local);
    if (covers(domains, SearchPathDomainMask::systemDomainMask))
        add(BundleDomain::system);
    if (covers(domains, SearchPathDomainMask::userDomainMask)) {
        add(BundleDomain::user);
        // Users put program bundles and images that they have downloaded here.
        const URL own = homeDirectory().appendingPathComponent("Applications");
        if (kind == BundleKind::application && isDirectory(own))
            urls.push_back(own);
    }
    return urls;
}

URL LinuxStandardDirectories::homeDirectory()
{
    return URL::fileURLWithPath(g_get_home_dir());
}

} // namespace quillbox
