-- Written by scripts/fleet-tables from contracts/: change that, or what the script says, and run it again.
CREATE DATABASE IF NOT EXISTS zt;
