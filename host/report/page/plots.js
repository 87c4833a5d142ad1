// Which figures are plotted, in which order and under which headings. What they are called, their units and what they
// mean comes with the data, from the contract.

import {TABLE} from './data.js';

/** @typedef {import('./series.js').FigureChoice} FigureChoice */
/**
 * @typedef {object} Plot
 * @property {string} id
 * @property {string} title
 * @property {FigureChoice[]} figures
 * @property {'lines'|'states'} [form]   states: texts over time, each on a line of its own
 * @property {[number, number]} [range]  shown at least
 * @property {{value: number, text: string}} [threshold]
 * @property {number} [most]             so many series, those with the greatest sums
 */
/** @typedef {{id: string, title: string, plots: Plot[]}} Section */

/**
 * @param {string} table
 * @param {import('./series.js').Over} over
 * @param {...string} columns
 * @returns {FigureChoice[]}
 */
function figures(table, over, ...columns) {
  return columns.map((column) => ({table, column, over}));
}

/** @type {[number, number]} */
const PERCENT = [0, 100];

/** @type {Section[]} */
export const SECTIONS = [
  {id: 'batteries', title: 'Batteries', plots: [
    {id: 'battery-charge', title: 'Charge of the batteries', range: PERCENT,
     figures: figures(TABLE.batteries, 'last', 'remaining_charge_capacity_percent')},
    {id: 'battery-health', title: 'Full capacity as a share of the design capacity', range: PERCENT,
     threshold: {value: 80, text: '80 %'},
     figures: figures(TABLE.batteries, 'last', 'full_charge_capacity_percent')},
    {id: 'battery-capacity', title: 'Full, remaining and design capacity', range: [0, 0],
     figures: [...figures(TABLE.batteries, 'last', 'full_charge_capacity', 'remaining_charge_capacity'),
               ...figures(TABLE.stored, 'last', 'battery_further_capacity_mwh')]},
    {id: 'battery-cycles', title: 'Charge cycles', figures: figures(TABLE.batteries, 'last', 'cycle_count')},
    {id: 'battery-rates', title: 'Charging and discharging', range: [0, 0],
     figures: figures(TABLE.batteries, 'last', 'charge_rate_mw', 'discharge_rate_mw')},
    {id: 'battery-state', title: 'What the batteries do', form: 'states',
     figures: figures(TABLE.batteries, 'last', 'charge_state')},
  ]},
  {id: 'temperatures', title: 'Temperatures and fans', plots: [
    {id: 'temperatures-by-hour', title: 'Temperatures', threshold: {value: 90, text: '90 °C'},
     figures: [...figures(TABLE.processors, 'mean', 'temperature_sensors_info[*]'),
               ...figures(TABLE.board, 'mean', 'temperature_sensors_info[*]'),
               ...figures(TABLE.cards, 'last', 'temperature_celsius'),
               ...figures(TABLE.npus, 'last', 'temperature_sensors_info[*]')]},
    {id: 'fan-steps', title: 'Speed step of the fans', range: PERCENT, threshold: {value: 95, text: '95'},
     figures: figures(TABLE.fans, 'mean', 'fan_statistics_info[duty_cycle]')},
    {id: 'fan-speeds', title: 'Tachometer speed of the fans', range: [0, 0],
     figures: figures(TABLE.fans, 'mean', 'fan_statistics_info[tach_current]', 'fan_statistics_info[tach_target]')},
  ]},
  {id: 'processors', title: 'Processors', plots: [
    {id: 'processor-load', title: 'Load of the processor at the moment of sending', range: PERCENT,
     figures: figures(TABLE.processors, 'last', 'utilization_percent')},
  ]},
  {id: 'memory', title: 'Memory', plots: [
    {id: 'memory-share', title: 'Physical memory in use, as a share', range: PERCENT,
     figures: figures(TABLE.memory, 'last', 'utilization_physical_percent')},
    {id: 'memory-amounts', title: 'Memory in use', range: [0, 0],
     figures: figures(TABLE.memory, 'last', 'used_physical_memory_kb', 'used_virtual_memory_kb',
                      'total_virtual_memory_kb')},
  ]},
  {id: 'cards', title: 'Graphics cards', plots: [
    {id: 'card-load', title: 'Load of the graphics cards', range: PERCENT,
     figures: figures(TABLE.cards, 'last', 'gpus_utilization_percent', 'encoder_utilization_percent',
                      'decoder_utilization_percent')},
    {id: 'card-memory', title: 'Video memory in use', range: [0, 0],
     figures: figures(TABLE.cards, 'last', 'memory_used_mb')},
    {id: 'card-clocks', title: 'Clocks of the graphics cards', range: [0, 0],
     figures: figures(TABLE.cards, 'last', 'gpus_clock_mhz', 'memory_clock_mhz')},
    {id: 'card-capped', title: 'What holds clocks down', form: 'states',
     figures: figures(TABLE.cards, 'last', 'performance_capped_reason')},
  ]},
  {id: 'npus', title: 'NPUs', plots: [
    {id: 'npu-memory', title: 'Memory of the NPUs in use', range: [0, 0],
     figures: figures(TABLE.npus, 'last', 'memory_used_mb')},
    {id: 'npu-full', title: 'Memory of the NPUs full', range: PERCENT,
     figures: figures(TABLE.npus, 'last', 'memory_controller_utilization_percent')},
    {id: 'npu-clocks', title: 'Clocks of the NPUs', range: [0, 0],
     figures: figures(TABLE.npus, 'last', 'npus_clock_mhz', 'memory_clock_mhz')},
  ]},
  {id: 'drives', title: 'Storage drives', plots: [
    {id: 'drive-use', title: 'Used share of the drives', range: PERCENT, threshold: {value: 90, text: '90 %'},
     figures: figures(TABLE.drives, 'last', 'utilization_percent')},
  ]},
  {id: 'network', title: 'Network', plots: [
    {id: 'network-access', title: 'Access', form: 'states',
     figures: [...figures(TABLE.network, 'all', 'has_internet_access', 'has_network_access'),
               ...figures(TABLE.network, 'any', 'is_vpn_connected')]},
    {id: 'signal', title: 'Signal strength', threshold: {value: -75, text: '−75 dBm'},
     figures: figures(TABLE.interfaces, 'mean', 'signal_strength')},
    {id: 'rates', title: 'Rates', range: [0, 0],
     figures: figures(TABLE.interfaces, 'mean', 'nominal_speed', 'receive_rate', 'transmission_rate')},
    {id: 'bytes', title: 'Bytes received and sent in the hour', range: [0, 0],
     figures: figures(TABLE.interfaces, 'sum', 'bytes_received', 'bytes_sent')},
    {id: 'channel', title: 'Radio channel', figures: figures(TABLE.interfaces, 'greatest', 'channel')},
    {id: 'interference', title: 'Other networks on the channel', range: [0, 0],
     figures: figures(TABLE.interfaces, 'sum', 'co_channel_interference_count', 'adjacent_channel_interference_count')},
    {id: 'trust', title: 'Trust', form: 'states', figures: figures(TABLE.interfaces, 'last', 'network_trust_level')},
    {id: 'managed', title: 'Managed networks', form: 'states',
     figures: figures(TABLE.interfaces, 'last', 'is_managed_network')},
    {id: 'radio', title: 'Radio', form: 'states', figures: figures(TABLE.interfaces, 'last', 'radio_type')},
    {id: 'tcp-connections', title: 'TCP connections', range: [0, 0],
     figures: figures(TABLE.network, 'greatest', 'tcp_i_p_v4_stats_info.current_connections')},
    {id: 'tcp-failures', title: 'TCP failures', range: [0, 0],
     figures: figures(TABLE.network, 'sum', 'tcp_i_p_v4_stats_info.failed_connections',
                      'tcp_i_p_v4_stats_info.errors_received', 'tcp_i_p_v6_stats_info.failed_connections')},
  ]},
  {id: 'processes', title: 'Processes', plots: [
    {id: 'process-load', title: 'Load by process', range: [0, 0], most: 8,
     figures: figures(TABLE.processes, 'last', 'resource_utilization_info.cpu_utilization_percent')},
    {id: 'process-memory', title: 'Memory by process', range: [0, 0], most: 8,
     figures: figures(TABLE.processes, 'last', 'resource_utilization_info.memory_utilization_mb')},
    {id: 'process-elevated', title: 'Elevated rights', form: 'states', most: 8,
     figures: figures(TABLE.processes, 'last', 'is_elevated')},
  ]},
  {id: 'session', title: 'Session', plots: [
    {id: 'idle', title: 'Time since the last input', range: [0, 0],
     figures: figures(TABLE.session, 'last', 'time_since_last_logon_minutes')},
    {id: 'up', title: 'Time since the last start', range: [0, 0],
     figures: figures(TABLE.session, 'last', 'time_since_last_boot_minutes')},
    {id: 'posture', title: 'Posture', form: 'states',
     figures: [...figures(TABLE.posture, 'last', 'device_mode'), ...figures(TABLE.stored, 'last', 'device_mode')]},
  ]},
];
