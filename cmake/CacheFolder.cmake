# The folder in which scripts/setup keeps what it makes, as scripts/environment names it: `cache`.
if(DEFINED ENV{ZT_CACHE_DIR})
  set(cache $ENV{ZT_CACHE_DIR})
elseif(DEFINED ENV{XDG_CACHE_HOME})
  set(cache $ENV{XDG_CACHE_HOME}/zt-telemetry)
else()
  set(cache $ENV{HOME}/.cache/zt-telemetry)
endif()
