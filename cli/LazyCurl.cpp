// libcurl brings some thirty libraries (TLS, Kerberos, LDAP, IDN, …) into every start of a
// program linked against it, and mapping and relocating them costs more than everything a status
// line computes. A status bar starts orvel-cli every few seconds and almost always finds the month
// in the cache, so the executable defines the libcurl functions the web client calls and opens
// the real library on the first of these calls. Linked with --as-needed, libcurl then does not load
// at start-up. A libcurl function missing here simply binds to the real library as before.

#define CURL_DISABLE_TYPECHECK // the type-checking macros would rename the definitions below
#include <curl/curl.h>

#include <cstdarg>
#include <dlfcn.h>

namespace {

void *library()
{
    static void *const handle = dlopen("libcurl.so.4", RTLD_NOW | RTLD_LOCAL);
    return handle;
}

template<typename Function>
Function resolve(const char *name)
{
    void *const handle = library();
    return handle ? reinterpret_cast<Function>(dlsym(handle, name)) : nullptr;
}

} // namespace

extern "C" {

CURLcode curl_global_init(long flags)
{
    static const auto real = resolve<CURLcode (*)(long)>("curl_global_init");
    return real ? real(flags) : CURLE_FAILED_INIT;
}

void curl_global_cleanup()
{
    static const auto real = resolve<void (*)()>("curl_global_cleanup");
    if (real)
        real();
}

CURL *curl_easy_init()
{
    static const auto real = resolve<CURL *(*)()>("curl_easy_init");
    return real ? real() : nullptr;
}

void curl_easy_cleanup(CURL *handle)
{
    static const auto real = resolve<void (*)(CURL *)>("curl_easy_cleanup");
    if (real)
        real(handle);
}

CURLcode curl_easy_perform(CURL *handle)
{
    static const auto real = resolve<CURLcode (*)(CURL *)>("curl_easy_perform");
    return real ? real(handle) : CURLE_FAILED_INIT;
}

CURLcode curl_easy_setopt(CURL *handle, CURLoption option, ...)
{
    static const auto real = resolve<CURLcode (*)(CURL *, CURLoption, ...)>("curl_easy_setopt");
    if (!real)
        return CURLE_FAILED_INIT;
    // Every option takes exactly one argument whose type follows from the option's number range.
    va_list arguments;
    va_start(arguments, option);
    CURLcode result;
    if (option < CURLOPTTYPE_OBJECTPOINT)
        result = real(handle, option, va_arg(arguments, long));
    else if (option >= CURLOPTTYPE_OFF_T && option < CURLOPTTYPE_BLOB)
        result = real(handle, option, va_arg(arguments, curl_off_t));
    else
        result = real(handle, option, va_arg(arguments, void *)); // data, callbacks, blobs
    va_end(arguments);
    return result;
}

CURLcode curl_easy_getinfo(CURL *handle, CURLINFO info, ...)
{
    static const auto real = resolve<CURLcode (*)(CURL *, CURLINFO, ...)>("curl_easy_getinfo");
    if (!real)
        return CURLE_FAILED_INIT;
    // Every query writes through one pointer.
    va_list arguments;
    va_start(arguments, info);
    void *const target = va_arg(arguments, void *);
    va_end(arguments);
    return real(handle, info, target);
}

const char *curl_easy_strerror(CURLcode code)
{
    static const auto real = resolve<const char *(*)(CURLcode)>("curl_easy_strerror");
    return real ? real(code) : "libcurl yüklenemedi";
}

curl_slist *curl_slist_append(curl_slist *list, const char *text)
{
    static const auto real = resolve<curl_slist *(*)(curl_slist *, const char *)>("curl_slist_append");
    return real ? real(list, text) : nullptr;
}

void curl_slist_free_all(curl_slist *list)
{
    static const auto real = resolve<void (*)(curl_slist *)>("curl_slist_free_all");
    if (real)
        real(list);
}

char *curl_easy_escape(CURL *handle, const char *text, int length)
{
    static const auto real = resolve<char *(*)(CURL *, const char *, int)>("curl_easy_escape");
    return real ? real(handle, text, length) : nullptr;
}

void curl_free(void *pointer)
{
    static const auto real = resolve<void (*)(void *)>("curl_free");
    if (real)
        real(pointer);
}

} // extern "C"
