# Tries the package on real Windows: the system's own event log and windows, no stand-ins but those for Canvix and its
# crash client, and PowerMessage.exe, which sends what the system sends when the machine sleeps and resumes. In a console
# of an administrator (eventcreate asks for that), with the two zips of a build, or their folders:
#   powershell -ExecutionPolicy Bypass -File scripts\TryOnWindows.ps1 -Package CanvixSentiq-<version>-windows-x64-program.zip -Doubles doubles
# Some three minutes. It prints what it expects and whether it came so, and ends with 1 when something did not. What it
# leaves: its folder below %TEMP% with the logs, and one event in the Application channel.
param(
  [Parameter(Mandatory = $true)] [string] $Package,
  [Parameter(Mandatory = $true)] [string] $Doubles
)
$ErrorActionPreference = 'Stop'
Set-StrictMode -Version 2

$mark = [guid]::NewGuid().ToString('N')
$source = "SentiqTry-$mark"
$folder = Join-Path $env:TEMP "Sentiq try $mark"  # With blanks: the paths of the logs have to be quoted.
$logs = Join-Path $folder 'all logs'
$own = Join-Path $logs 'session-try'
$failures = 0

# Prints whether the condition holds, or comes to hold within the seconds.
function Expect([string] $what, [int] $seconds, [scriptblock] $condition) {
  $end = (Get-Date).AddSeconds($seconds)
  do {
    if (& $condition) {
      Write-Host "ok    $what"
      return
    }
    Start-Sleep -Milliseconds 500
  } while ((Get-Date) -lt $end)
  Write-Host "FAIL  $what"
  $script:failures++
}

function Unfold([string] $from) {
  if (Test-Path $from -PathType Container) {
    Copy-Item (Join-Path $from '*') $folder -Recurse
  } else {
    Expand-Archive $from $folder -Force
  }
}

# The lines of one of the three logs, decoded, as one text.
function Read-Log([string] $name) {
  $path = Join-Path $own $name
  if (-not (Test-Path $path)) { return '' }
  return (& (Join-Path $folder 'sentiq-logs.exe') decode $path | Out-String)
}

function Running {
  # Not by the whole path: %TEMP% may be a short name of it.
  Get-Process CanvixSentiq -ErrorAction SilentlyContinue | Where-Object { $_.Path -like "*$mark*" }
}

$canvix = $null
try {
  New-Item -ItemType Directory (Join-Path $logs 'session-before') | Out-Null
  Unfold $Package
  Unfold $Doubles
  Remove-Item (Join-Path $folder 'wevtapi.dll') -ErrorAction SilentlyContinue  # That stand-in is for Wine alone.
  # The mark that a session leaves which ended abnormally.
  New-Item -ItemType File (Join-Path $logs 'session-before\running') | Out-Null

  & eventcreate.exe /L APPLICATION /T ERROR /ID 42 /SO $source /D "Written for this try: $mark" | Out-Null
  Expect 'an event is written to the Application channel' 0 { $LASTEXITCODE -eq 0 }

  $canvix = Start-Process (Join-Path $folder 'Canvix.exe') "45 `"$logs`" try" -PassThru -WindowStyle Hidden
  Expect 'the stand-in for Canvix starts the program' 15 { @(Running).Count -eq 1 }
  Expect 'the watchdog says that it has started' 30 {
    (Read-Log 'CanvixWatchdogInfoSession.log').Contains('Done with start of Watchdog application')
  }
  Expect 'the initial log is about the session before, and complete' 30 {
    $text = Read-Log 'CanvixWatchdogInfoInitialSession.log'
    $text.Contains('OrbelSessionID: before') -and $text.Contains('Initial metric collection done.') -and $text.Contains('=' * 39)
  }
  Expect 'no channel is refused' 0 { -not (Read-Log 'CanvixWatchdogInfoInitialSession.log').Contains('EvtQuery failed') }
  Expect 'a record with a disk, and Canvix running' 30 {
    (Read-Log 'CanvixSentiqSession.log') -match '"freeDiskSpace":[1-9].*"status":"Running"'
  }
  $standby = (Read-Log 'CanvixWatchdogInfoSession.log').Contains('System Will enter/exit Standby')
  Write-Host "note  Windows told of the display right at the start: $standby"

  Expect 'the hidden window takes the message of a suspend' 15 {
    & (Join-Path $folder 'PowerMessage.exe') 4
    $LASTEXITCODE -eq 0
  }
  Expect 'the watchdog log begins anew, with the sleep and the event' 15 {
    $text = Read-Log 'CanvixWatchdogInfoSession.log'
    $text.Contains('System Will Sleep') -and $text.Contains($mark) -and -not $text.Contains('Starting Watchdog application')
  }
  & (Join-Path $folder 'PowerMessage.exe') 7
  Expect 'the resume follows' 15 { (Read-Log 'CanvixWatchdogInfoSession.log').Contains('System Resume') }

  Expect 'the stand-in for Canvix ends' 60 { $canvix.HasExited }
  Expect 'the session log ends with the exit' 15 {
    (Read-Log 'CanvixSentiqSession.log').Contains('Exit Status - Canvix is no longer alive')
  }
  Expect 'the watchdog notices the exit' 15 { (Read-Log 'CanvixWatchdogInfoSession.log').Contains('App has exited') }
  Expect 'the program stays for its two minutes and ends by itself' 180 { @(Running).Count -eq 0 }
  Expect 'the watchdog stopped cleanly' 0 { (Read-Log 'CanvixWatchdogInfoSession.log').Contains('Watchdog stopped cleanly.') }

  $summary = @(& (Join-Path $folder 'sentiq-logs.exe') summary $own)
  Expect 'the reader reads the folder without complaint' 0 { $LASTEXITCODE -eq 0 }
  Expect 'its first line says that Canvix ended' 0 { $summary[0] -match '^Canvix ended' }
  $summary | ForEach-Object { Write-Host "      $_" }
  & (Join-Path $folder 'sentiq-logs.exe') report $own -o (Join-Path $own 'report.html')
  Expect 'a report with the event' 0 { (Get-Content (Join-Path $own 'report.html') -Raw).Contains($mark) }
} finally {
  if ($canvix -and -not $canvix.HasExited) { $canvix.Kill() }
  Running | Stop-Process -Force
  # What eventcreate registers for its source.
  Remove-Item "HKLM:\SYSTEM\CurrentControlSet\Services\EventLog\Application\$source" -ErrorAction SilentlyContinue
  Write-Host "The logs lie in $own"
}
if ($failures -gt 0) {
  Write-Host "$failures of the expectations failed"
  exit 1
}
Write-Host 'All came as expected'
exit 0
