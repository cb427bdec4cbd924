CREATE TABLE metadata (name text, value text);
CREATE VIEW tiles AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT 0 AS zoom_level, 0 AS tile_column, i AS tile_row, x'00' AS tile_data FROM n;
