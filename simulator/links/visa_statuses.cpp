#include "simulator/links/visa_statuses.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

namespace zansim {
namespace {

using namespace lumodevice::io;

constexpr std::pair<ViStatus, std::string_view> kTexts[] = {
    {VI_SUCCESS, "Operation completed successfully."},
    {VI_SUCCESS_TERM_CHAR, "The termination character was read."},
    {VI_SUCCESS_MAX_CNT, "As many bytes were read as were asked for."},
    {VI_WARN_NULL_OBJECT, "The null object was closed."},
    {VI_WARN_UNKNOWN_STATUS, "The status is none of this library."},
    {VI_SUCCESS_NESTED_EXCLUSIVE, "The session has further exclusive locks."},
    {VI_ERROR_INV_OBJECT, "There is no such session or object."},
    {VI_ERROR_RSRC_LOCKED, "Another session has the lock of the resource."},
    {VI_ERROR_INV_EXPR, "The find expression is not well-formed."},
    {VI_ERROR_RSRC_NFOUND, "There is no such resource, or no further one."},
    {VI_ERROR_INV_RSRC_NAME, "The name is none of a resource."},
    {VI_ERROR_INV_ACC_MODE, "There is no such access mode."},
    {VI_ERROR_TMO, "The time-out passed before the operation was complete."},
    {VI_ERROR_NSUP_ATTR, "The object has no such attribute."},
    {VI_ERROR_NSUP_ATTR_STATE, "The attribute does not take that value."},
    {VI_ERROR_ATTR_READONLY, "The attribute can only be read."},
    {VI_ERROR_INV_LOCK_TYPE, "There is no such kind of lock here."},
    {VI_ERROR_INV_EVENT, "The resource has no such event."},
    {VI_ERROR_HNDLR_NINSTALLED, "No handler is installed."},
    {VI_ERROR_NENABLED, "The event is not enabled."},
    {VI_ERROR_NSUP_OPER, "The session does not have this operation."},
    {VI_ERROR_USER_BUF, "A buffer is missing."},
    {VI_ERROR_SESN_NLOCKED, "The session has no lock."},
    {VI_ERROR_CONN_LOST, "The connection is lost."},
};

}  // namespace

std::string_view statusText(ViStatus status) {
  const auto* const found =
      std::ranges::find(kTexts, status, [](const auto& row) { return row.first; });
  return found == std::end(kTexts) ? std::string_view() : found->second;
}

}  // namespace zansim
