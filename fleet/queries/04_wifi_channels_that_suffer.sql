-- On which Wi-Fi channels do machines suffer? Neighbours on the channel and beside it for each hour, the signal, and how
-- much of the link's nominal speed is left.
SELECT
    channel,
    radio_type,
    count() AS hours,
    uniqExact(machine) AS machines,
    avg(co_channel_interference_count) AS on_channel,
    avg(adjacent_channel_interference_count) AS beside_channel,
    avg(signal_strength) AS mean_dbm,
    avg(receive_rate / nominal_speed) AS share_of_speed
FROM zt.interfaces FINAL
WHERE time >= {from:DateTime('UTC')} AND time < {until:DateTime('UTC')} AND channel > 0
GROUP BY channel, radio_type
ORDER BY on_channel + beside_channel DESC, channel, radio_type
